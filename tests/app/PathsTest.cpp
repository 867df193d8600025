#include <gtest/gtest.h>

#include <string>

#include "app/Paths.h"

namespace {

TEST(Paths, EveryFolderComesFromTheProgramsOwnPlace) {
  SetProgramFolder(L"C:\\Games\\Morva\\Vrk\\VrkConfig.exe");
  ASSERT_TRUE(DeriveGamePaths());
  const AppPaths& paths = Paths();
  struct Case {
    const std::wstring& actual;
    const wchar_t* expected;
  };
  const Case cases[] = {
      {paths.programFolder, L"C:\\Games\\Morva\\Vrk"},
      {paths.settingsFile, L"C:\\Games\\Morva\\Vrk\\Vrk.ini"},
      {paths.backupFolder, L"C:\\Games\\Morva\\Vrk\\save.backup"},
      {paths.screenshotFolder, L"C:\\Games\\Morva\\Vrk\\screenshot"},
      {paths.gameFolder, L"C:\\Games\\Morva"},
      {paths.gameData, L"C:\\Games\\Morva\\data"},
      {paths.gameGraphics, L"C:\\Games\\Morva\\graphic"},
      {paths.gameSounds, L"C:\\Games\\Morva\\sound"},
      {paths.gameSaves, L"C:\\Games\\Morva\\save"},
      {paths.userFolder, L"C:\\Games\\Morva\\user"},
      {paths.userMusic, L"C:\\Games\\Morva\\user\\music"},
      {paths.userSounds, L"C:\\Games\\Morva\\user\\sound"},
      {paths.userGraphics, L"C:\\Games\\Morva\\user\\graphic"},
  };
  for (const Case& c : cases) EXPECT_EQ(c.actual, c.expected);
  EXPECT_EQ(paths.programFolderA, "C:\\Games\\Morva\\Vrk");
  EXPECT_EQ(paths.backupFolderA, "C:\\Games\\Morva\\Vrk\\save.backup");
  EXPECT_EQ(paths.screenshotFolderA, "C:\\Games\\Morva\\Vrk\\screenshot");
  EXPECT_EQ(paths.gameFolderA, "C:\\Games\\Morva");
  EXPECT_EQ(paths.gameSavesA, "C:\\Games\\Morva\\save");
}

TEST(Paths, CombiningPutsOneSeparatorBetweenTheParts) {
  EXPECT_EQ(CombinePath(L"C:\\a\\", L"b"), L"C:\\a\\b");
  EXPECT_EQ(CombinePath(L"C:\\a", L"b"), L"C:\\a\\b");
  EXPECT_EQ(CombinePath(std::string("C:\\a"), std::string("b")), "C:\\a\\b");
  EXPECT_EQ(FolderOf(L"C:\\a\\b.exe"), L"C:\\a");
  EXPECT_EQ(FolderOf(L"b.exe"), L"");
}

}  // namespace
