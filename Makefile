# Two commands do all the set-up on a fresh Debian machine:
#   make run   installs what is missing, builds and opens the App Builder
#   make test  installs what is missing, builds and runs every test
# PRESET selects a CMake preset (default, nogui, asan, fuzz).

PRESET ?= default
BUILD_DIR := build/$(PRESET)

.PHONY: all deps configure build test asan run bench format clean

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
	@./bench/run.sh

format:
	@find src tests bench fuzz -name '*.h' -o -name '*.cpp' | xargs clang-format -i

clean:
	@rm -rf build
