# Two commands do all the set-up on a fresh Debian machine:
#   make run   installs what is missing, builds and opens the App Builder
#   make test  installs what is missing, builds and runs every test
# PRESET selects a CMake preset (default, nogui, asan, fuzz, release, portable).
#   make package  builds the release preset and writes the .deb to build/release

PRESET ?= default
BUILD_DIR := build/$(PRESET)

.PHONY: all deps configure build test asan run bench package format format-check fuzz clean

all: build

deps:
	@./scripts/install-deps.sh

configure: deps
	@cmake --preset $(PRESET) >/dev/null

build: configure
	@cmake --build --preset $(PRESET)

test: build
	@ctest --preset $(PRESET)

asan:
	@$(MAKE) --no-print-directory test PRESET=asan

run: build
	@./scripts/run-app.sh $(BUILD_DIR)

bench: deps
	@./scripts/install-deps.sh bench
	@./bench/run.sh

package:
	@$(MAKE) --no-print-directory build PRESET=release
	@cpack --preset release

SOURCES = find src tests bench fuzz dist -name '*.h' -o -name '*.cpp'

format:
	@$(SOURCES) | xargs clang-format -i

# Fails, naming each file and line, where the sources differ from .clang-format.
format-check: deps
	@$(SOURCES) | xargs clang-format --dry-run -Werror

# Builds the fuzz preset and runs every libFuzzer target on its corpus;
# FUZZ_SECONDS is the time each target gets.
FUZZ_SECONDS ?= 60
fuzz: deps
	@./fuzz/run.sh $(FUZZ_SECONDS)

clean:
	@rm -rf build
