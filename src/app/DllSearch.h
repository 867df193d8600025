#pragma once

// Makes Windows look for the DLLs this program loads in the system folder only, so that a DLL with
// a system name dropped into the game folder is never run. Libraries loaded by full path (the audio
// libraries beside the program) are not affected. Call first thing at start-up.
bool SearchSystemFolderOnly();
