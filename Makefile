# The two commands of the README, and a few more for developers.
#   make demo   install what is missing, build Release, run the tool on samples/
#   make test   install what is missing, build with ASan+UBSan, run ctest
JOBS ?= $(shell nproc)
BUILD_RELEASE ?= build/release
BUILD_TEST ?= build/test
BUILD_FUZZ ?= build/fuzz
DEMO_OUT ?= demo-output

.PHONY: deps demo test release bench fuzz clean

deps:
	@scripts/deps.sh

release: deps
	@cmake -S . -B $(BUILD_RELEASE) -G Ninja -DCMAKE_BUILD_TYPE=Release -DFILEINFO_BUILD_TESTS=OFF -DFILEINFO_WERROR=ON >/dev/null
	@cmake --build $(BUILD_RELEASE) -j $(JOBS)

demo: release
	@scripts/demo.sh $(BUILD_RELEASE) $(DEMO_OUT)

test: deps
	@cmake -S . -B $(BUILD_TEST) -G Ninja -DCMAKE_BUILD_TYPE=Debug -DFILEINFO_SANITIZE=ON -DFILEINFO_WERROR=ON >/dev/null
	@cmake --build $(BUILD_TEST) -j $(JOBS)
	@cd $(BUILD_TEST) && ASAN_OPTIONS=detect_leaks=1 ctest --output-on-failure -j $(JOBS) $(CTEST_ARGS)

bench: deps
	@cmake -S . -B build/bench -G Ninja -DCMAKE_BUILD_TYPE=Release -DFILEINFO_BUILD_TESTS=OFF -DFILEINFO_BUILD_BENCH=ON -DFILEINFO_WERROR=ON >/dev/null
	@cmake --build build/bench -j $(JOBS)

fuzz: deps
	@CC=clang CXX=clang++ cmake -S . -B $(BUILD_FUZZ) -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo -DFILEINFO_BUILD_TESTS=OFF -DFILEINFO_BUILD_TOOLS=OFF -DFILEINFO_BUILD_FUZZ=ON -DFILEINFO_WERROR=ON >/dev/null
	@cmake --build $(BUILD_FUZZ) -j $(JOBS)

clean:
	rm -rf build $(DEMO_OUT)
