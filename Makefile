# Tamsel: the two set-up commands are `make run` and `make test`.
BUILD      ?= build
ASAN_BUILD ?= build-asan
BENCH_BUILD ?= build-release
COVERAGE_BUILD ?= build-coverage
JOBS       ?= $(shell nproc)
CMAKE_GEN  := -G Ninja

.PHONY: run test bench build bootstrap coverage format clean

bootstrap:
	@bash scripts/bootstrap

$(BUILD)/build.ninja: | bootstrap
	cmake -S . -B $(BUILD) $(CMAKE_GEN) -DCMAKE_BUILD_TYPE=RelWithDebInfo -DTAMSEL_WERROR=$(if $(CI),ON,OFF)

build: bootstrap $(BUILD)/build.ninja
	cmake --build $(BUILD) -j $(JOBS)

run: build
	$(BUILD)/src/tamsel

test: build
	cd $(BUILD) && QT_QPA_PLATFORM=offscreen ctest --output-on-failure -j $(JOBS)
	cmake -S . -B $(ASAN_BUILD) $(CMAKE_GEN) -DCMAKE_BUILD_TYPE=Debug -DTAMSEL_SANITIZE=ON -DTAMSEL_WERROR=$(if $(CI),ON,OFF)
	cmake --build $(ASAN_BUILD) -j $(JOBS)
	cd $(ASAN_BUILD) && QT_QPA_PLATFORM=offscreen ctest --output-on-failure -j $(JOBS)

# The tests with gcov counters in their own build; the report counts src/ only. The crash-recovery
# tests, which preload a library into the programs they kill, leave counters that gcov finds
# corrupt ("profile mismatch", negative counts), so they stay out of the count.
coverage: bootstrap
	cmake -S . -B $(COVERAGE_BUILD) $(CMAKE_GEN) -DCMAKE_BUILD_TYPE=Debug -DCMAKE_CXX_FLAGS=--coverage \
		-DCMAKE_EXE_LINKER_FLAGS=--coverage -DCMAKE_SHARED_LINKER_FLAGS=--coverage -DTAMSEL_WERROR=OFF
	cmake --build $(COVERAGE_BUILD) -j $(JOBS)
	find $(COVERAGE_BUILD) -name '*.gcda' -delete
	cd $(COVERAGE_BUILD) && QT_QPA_PLATFORM=offscreen ctest --output-on-failure -j $(JOBS) \
		-E crash_recovery_tests; \
		status=$$?; cd $(CURDIR) && scripts/coverage-report $(COVERAGE_BUILD) && exit $$status

bench: bootstrap
	cmake -S . -B $(BENCH_BUILD) $(CMAKE_GEN) -DCMAKE_BUILD_TYPE=Release
	cmake --build $(BENCH_BUILD) -j $(JOBS)
	cmake --build $(BENCH_BUILD) --target run-benchmarks

format:
	find src tests bench -name '*.cpp' -o -name '*.h' | xargs clang-format -i

clean:
	rm -rf $(BUILD) $(ASAN_BUILD) $(BENCH_BUILD) $(COVERAGE_BUILD)
