# Tamsel: the two set-up commands are `make run` and `make test`.
BUILD      ?= build
ASAN_BUILD ?= build-asan
BENCH_BUILD ?= build-release
JOBS       ?= $(shell nproc)
CMAKE_GEN  := -G Ninja

.PHONY: run test bench build bootstrap format clean

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

bench: bootstrap
	cmake -S . -B $(BENCH_BUILD) $(CMAKE_GEN) -DCMAKE_BUILD_TYPE=Release
	cmake --build $(BENCH_BUILD) -j $(JOBS)
	cmake --build $(BENCH_BUILD) --target run-benchmarks

format:
	find src tests bench -name '*.cpp' -o -name '*.h' | xargs clang-format -i

clean:
	rm -rf $(BUILD) $(ASAN_BUILD) $(BENCH_BUILD)
