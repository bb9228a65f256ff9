# Thin: every target installs what it needs and calls a CMake preset.
JOBS ?= $(shell nproc)
OUT ?= out
FUZZ_SECONDS ?= 60
SOAK_FRAMES ?= 10000
SOAK_KILLS ?= 100
SOAK_SCENES ?= 18000

.PHONY: help demo test test-arm64 test-farm windows test-windows macos-linux package bench bench-road sanitize \
        sanitize-threads soak fuzz mutants manual format-check format setup-build setup-test setup-sanitize setup-farm release clean

help:
	@echo "make demo          install what it needs, build, render two real scenes to $(OUT)/"
	@echo "make test          install what it needs, build, run all tests"
	@echo "make test-arm64    the same for 64-bit ARM: a cross compiler, the tests in an emulator; takes a while"
	@echo "make test-farm     the examples for farms, on a Slurm of its own on this machine; a minute, and the build"
	@echo "make macos-linux   build the macOS bundle, unsigned, with a compiler from npm, and check its structure"
	@echo "make windows       cross-compile the effect and the program for Windows, to build/windows"
	@echo "make test-windows  the same with the tests, which run under Wine"
	@echo "make package       archives for Linux and Windows in build/packages: effect, program, manual, INSTALL"
	@echo "make bench         measure the renderer against a plain scalar one, in one run"
	@echo "make bench-road    measure the program from scene to files, stage by stage"
	@echo "make sanitize      the same tests under the address and undefined-behaviour sanitizers"
	@echo "make sanitize-threads  all that uses threads, under the thread sanitizer"
	@echo "make soak          that and mutants, $(SOAK_FRAMES) frames in one process, $(SOAK_SCENES) wild scenes, $(SOAK_KILLS) killed runs"
	@echo "make fuzz          hostile files and command lines for every reader, FUZZ_SECONDS ($(FUZZ_SECONDS)) each"
	@echo "make mutants       do the tests notice a hundred small slips in the sources? Ten minutes"
	@echo "make manual        weave the controls into docs/manual.md and docs/presets.md, and redraw their pictures"
	@echo "make format-check  are all sources laid out as .clang-format says?"

demo: setup-build release
	@tools/demo.sh build/release/zam $(OUT)

test: setup-test
	cmake --preset $(PRESET)
	cmake --build --preset $(PRESET) -j $(JOBS)
	ctest --preset $(PRESET) -j $(JOBS)
test soak: PRESET ?= release

macos-linux: setup-build release
	@tools/setup.sh macos
	@tools/macos/setup.sh
	cmake --preset macos-linux
	cmake --build --preset macos-linux -j $(JOBS)
	tools/macos/check_bundle.py build/macos-linux/Zam.plugin effect/exports.map build/release/zam

test-arm64:
	@tools/setup.sh build test arm64
	cmake --preset arm64
	cmake --build --preset arm64 -j $(JOBS)
	ctest --preset arm64 -j $(JOBS)

test-farm: setup-farm release
	tests/farm/farm_test.py build/release/zam

windows:
	@tools/setup.sh build windows
	@tools/windows_libraries.sh
	cmake --preset windows -DZAM_TESTS=OFF
	cmake --build --preset windows -j $(JOBS)

test-windows: setup-build release
	@tools/setup.sh build test windows wine
	@tools/windows_libraries.sh test
	cmake --preset windows
	cmake --build --preset windows -j $(JOBS)
	ctest --preset windows -j $(JOBS)

package: setup-build release windows
	cpack --config build/release/CPackConfig.cmake
	cpack --config build/windows/CPackConfig.cmake

sanitize: setup-sanitize
	cmake --preset asan
	cmake --build --preset asan -j $(JOBS)
	ctest --preset asan -j $(JOBS)

sanitize-threads: setup-sanitize
	cmake --preset tsan
	cmake --build --preset tsan -j $(JOBS)
	ctest --preset tsan -j $(JOBS)

# What takes long and asks for much; each line is a run of its own.
soak: setup-test sanitize-threads mutants
	cmake --preset $(PRESET) -DZAM_TESTS=ON
	cmake --build --preset $(PRESET) -j $(JOBS)
	ZAM_FRAMES=$(SOAK_FRAMES) build/release/tests/contract/contract_tests --gtest_filter='LongRun.*'
	ZAM_SCENES=$(SOAK_SCENES) ZAM_FIRST_SCENE=0 build/release/tests/contract/contract_tests --gtest_filter='Numbers.*'
	ZAM_KILLS=$(SOAK_KILLS) python3 tests/cli/stopped_runs_test.py . $(CURDIR)/build/release/zam

fuzz: setup-sanitize
	cmake --preset asan
	cmake --build --preset fuzz -j $(JOBS)
	tests/fuzz/run.sh build/asan/tests/fuzz $(FUZZ_SECONDS)

mutants: setup-test
	tests/mutation/mutate.py -j $(JOBS)

release:
	cmake --preset release -DZAM_TESTS=OFF
	cmake --build --preset release -j $(JOBS)

bench: setup-build
	cmake --preset release -DZAM_TESTS=OFF -DZAM_BENCH=ON
	cmake --build --preset release -j $(JOBS)
	build/release/bench/zam_bench $(BENCH)

bench-road: BENCH ?= --filter road
bench-road: bench

manual: setup-test release
	tools/manual.py build/release/zam

format-check: setup-test
	@git ls-files '*.h' '*.c' '*.cpp' '*.inc' | xargs clang-format --dry-run --Werror

format:
	git ls-files '*.h' '*.c' '*.cpp' '*.inc' | xargs clang-format -i

setup-build:
	@tools/setup.sh build
setup-test:
	@tools/setup.sh build test
setup-sanitize:
	@tools/setup.sh build test sanitize
setup-farm:
	@tools/setup.sh build farm

clean:
	rm -rf build $(OUT)
