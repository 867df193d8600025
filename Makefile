# The two commands a newcomer needs: `make run` and `make test`. Both install what is missing first.
BUILD ?= build
X64 := $(BUILD)/x86_64
X86 := $(BUILD)/i686
JOBS ?= 2
export WINEPREFIX := $(abspath $(BUILD))/wine
# Compiler cache: rebuilds and other checkouts of the tree reuse what was compiled once.
export CCACHE_BASEDIR := $(abspath .)
export CCACHE_NOHASHDIR := 1
LAUNCHER := $(if $(shell command -v ccache),-DCMAKE_CXX_COMPILER_LAUNCHER=ccache -DCMAKE_C_COMPILER_LAUNCHER=ccache)

.PHONY: all setup configure build run test bench torture fuzz screenshots dist format clean

all: build

setup:
	@scripts/setup

$(X64)/build.ninja:
	cmake -S . -B $(X64) -G Ninja -DCMAKE_TOOLCHAIN_FILE=cmake/mingw-w64-x86_64.cmake \
	  -DCMAKE_BUILD_TYPE=Release -DVRK_WINEPREFIX=$(WINEPREFIX) $(LAUNCHER)

$(X86)/build.ninja:
	cmake -S . -B $(X86) -G Ninja -DCMAKE_TOOLCHAIN_FILE=cmake/mingw-w64-i686.cmake \
	  -DCMAKE_BUILD_TYPE=Release -DVRK_WINEPREFIX=$(WINEPREFIX) $(LAUNCHER)

configure: setup $(X64)/build.ninja $(X86)/build.ninja

build: configure
	cmake --build $(X64) -j$(JOBS)
	cmake --build $(X86) -j$(JOBS)

# The 32-bit suite runs where wine32 is installed: the 32-bit exe is the one players use.
test: build
	scripts/run-tests $(X64)
	@if scripts/has-wine32; then scripts/run-tests $(X86); \
	else echo "test: wine32 is not installed, so only the 64-bit suite ran"; fi

run: setup $(X64)/build.ninja
	cmake --build $(X64) -j$(JOBS) --target VrkConfig
	scripts/run-demo $(X64)/VrkConfig.exe $(BUILD)

bench: setup $(X64)/build.ninja
	cmake --build $(X64) -j$(JOBS)
	scripts/run-bench $(X64)

# Kills savers 1,000 times at random moments; every list file and Vrk.ini must come out old or new.
torture: setup $(X64)/build.ninja
	cmake --build $(X64) -j$(JOBS) --target torture
	scripts/wine-run $(X64)/tools/torture/torture.exe 1000

# A million mutated list files through the reader, built with the run-time checks; 2,000 hostile files
# for each list editor, opened and confirmed in process, and 2,000 hostile clipboard texts pasted into
# each; 10,000 hostile Vrk.ini files loaded and saved. Failures join the corpora.
# SEED=N makes the files of an earlier run again.
fuzz: setup $(X64)/build.ninja
	cmake --build $(X64) -j$(JOBS) --target fuzz editor_fuzz settings_fuzz
	scripts/run-fuzz $(X64) $(SEED)

screenshots: setup $(X64)/build.ninja
	cmake --build $(X64) -j$(JOBS)
	scripts/screenshots $(X64) $(BUILD)/screenshots

dist: build
	scripts/make-dist $(BUILD)

format:
	clang-format -i $$(git ls-files 'src/*.cpp' 'src/*.h' 'tests/*.cpp' 'tests/*.h' 'bench/*.cpp' 'bench/*.h' 'tools/*.cpp' 'tools/*.h')

clean:
	rm -rf $(X64) $(X86) $(BUILD)/dist $(BUILD)/screenshots $(BUILD)/demo
