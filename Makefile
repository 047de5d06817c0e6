# What a newcomer needs is `make run` and `make test`; each does all its own set-up.
# `make help` lists the rest.

BUILD := build/release
JOBS ?= $(shell nproc)
# Many a test waits for another program instead of computing.
TEST_JOBS ?= $(shell expr \( $(JOBS) \* 3 + 1 \) / 2)
FUZZ_SECONDS ?= 60
RUNS ?= 10
PASSWORDS ?= 1000
# What goes the same ways through the corrector thousands of times.
THOROUGH_TESTS := ^(Crash|LockRace|Property)\.|^(Text\.ShortCuts.*|UserDict\.AHundredThousandWordsAreRead|WordListScan\.(AgreesWith.*|FindsOneWrong.*))$$
export CMAKE_BUILD_PARALLEL_LEVEL := $(JOBS)

.DEFAULT_GOAL := help
.PHONY: help run build data test packages check-reproducible test-packages release test-apps test-desktops test-fcitx5 test-terminal stories bench measure measure-unseen ceiling frequencies fuzz format check-format lint strict sanitize sanitize-threads coverage macos-app page page-files test-page bench-page install clean mutate mutate-macos faults soak recordings pictures

help: ## List the targets
	@sed -n 's/^\([a-z-]*\):.*## /\1\t/p' $(MAKEFILE_LIST) | expand -t 16

run: build data ## Build everything and show it: in a terminal, or as a demonstration
	@scripts/run $(BUILD)/tessarok

build: $(BUILD)/build.ninja ## Build the program: build/release/tessarok
	@cmake --build --preset release --target tessarok

data: $(BUILD)/build.ninja ## Make the word data in Resources/
	@scripts/install-packages data
	@cmake --build --preset release --target data

test: ## Build and run every test
	@if scripts/install-packages --has format; then $(MAKE) --no-print-directory check-format; \
	  else echo "The format is not checked: this system has no clang-format-14"; fi
	@scripts/install-packages build data test
	@cmake --preset release > /dev/null
	cmake --build --preset release --target data all
	ctest --preset release -j $(TEST_JOBS)

test-apps: build data ## Type into Chromium, a Qt entry, and programs that fill a terminal (installs them)
	@scripts/install-packages test test-apps
	@cmake --build --preset release --target tessarok_application_tests tessarok_fcitx5_application_tests
	@$(BUILD)/tests/desktops/x11/tessarok_application_tests
	@$(BUILD)/tests/desktops/fcitx5/tessarok_fcitx5_application_tests
	@tests/desktops/terminal/check-full-screen $(BUILD)/tessarok Resources

test-desktops: $(BUILD)/build.ninja ## Type into programs on KWin, sway and GNOME (installs them), with a control run each (hours); CASES="kwin gtk4 15"
	@scripts/install-packages test test-desktops
	@cmake --preset release > /dev/null
	@cmake --build --preset release --target tessarok tessarok_fcitx5 tessarok_ibus tessarok_wayland_keys
	@tests/desktops/wayland/check-gnome $(BUILD) tests/data
	@tests/desktops/wayland/check-desktops $(BUILD) tests/data tests/desktops/wayland/figures.json $(CASES)

test-fcitx5: $(BUILD)/build.ninja ## Type the sentences through Fcitx5 over and over, RUNS (10) times
	@scripts/install-packages test
	@cmake --build --preset release --target tessarok_fcitx5_session_tests
	@$(BUILD)/tests/desktops/fcitx5/tessarok_fcitx5_session_tests --gtest_filter='*Sentences*' --gtest_repeat=$(RUNS)

test-terminal: build data ## Type PASSWORDS (1000) into hidden prompts and every name of a program at a prompt (minutes)
	@scripts/install-packages test test-terminal
	@tests/desktops/terminal/check-hidden-input $(BUILD)/tessarok Resources $(PASSWORDS)
	@tests/desktops/terminal/check-command-lines $(BUILD)/tessarok Resources tests/desktops/terminal/command-lines.txt
	@bash -c 'compgen -c' > build/names-of-programs.txt && apt-cache pkgnames > build/names-of-packages.txt
	@tests/desktops/terminal/check-command-lines $(BUILD)/tessarok Resources --names build/names-of-programs.txt build/names-of-packages.txt

pictures: build data ## Take the pictures of sessions of KWin and GNOME for docs/wayland.md
	@scripts/install-packages test test-desktops
	@cmake --build --preset release --target tessarok tessarok_fcitx5 tessarok_ibus tessarok_wayland_keys
	@tests/desktops/wayland/take-pictures $(BUILD) Resources docs/images

bench: data ## Measure time, memory and the delay of keys; PUBLISH=1 puts the table into the documents
	@scripts/install-packages bench
	@cmake --preset release > /dev/null
	@cmake --build --preset release --target benches
	@scripts/bench $(if $(PUBLISH),--publish) $(BUILD)

fuzz: ## Fuzz every parser, FUZZ_SECONDS (60) each
	@scripts/install-packages build lint
	@cmake --preset fuzz > /dev/null
	@cmake --build --preset fuzz --target tessarok_fuzz
	@scripts/fuzz build/fuzz $(FUZZ_SECONDS)

faults: build ## Make every call of the system fail in turn, and look at what is left
	@scripts/install-packages test
	@cmake --build --preset release --target tessarok_faults tessarok_x11_tests
	@tests/fault/check-faults --all $(BUILD)/tests/fault/libtessarok_faults.so $(BUILD)/tessarok tests/data
	@TESSAROK_ALL_FAULTS=1 $(BUILD)/tests/desktops/x11/tessarok_x11_tests --gtest_filter='*Faults.*'

soak: build ## Eight hours of typing with the faults of a day, on the virtual desktop, and one each on X11 and in terminals
	@scripts/install-packages test
	@cmake --build --preset release --target tessarok_x11_tests tessarok_terminal_tests
	@tests/system/check-soak --hours 8 $(BUILD)/tessarok tests/data
	@TESSAROK_SOAK_SECONDS=3600 $(BUILD)/tests/desktops/terminal/tessarok_terminal_tests --gtest_filter='*LongDay*'
	@TESSAROK_SOAK_SECONDS=3600 $(BUILD)/tests/desktops/x11/tessarok_x11_tests --gtest_filter='*LongDay*'

mutate: build ## Make 100 mistakes in the corrector, one at a time, and see that the tests notice
	@scripts/install-packages test
	@cmake --build --preset release --target tessarok_text_tests tessarok_words_tests tessarok_typing_tests tessarok_app_tests tessarok_story_check
	@scripts/mutate

mutate-macos: $(BUILD)/build.ninja ## Make mistakes that would show only on a Mac, and see that the tests notice
	@scripts/install-packages test
	@cmake --build --preset release --target tessarok_appkit_tests tessarok_macos_tests
	@tests/desktops/macos/check-mistakes $(BUILD)

measure: data build/ceiling.json ## Type thousands of sentences and report how they come out: build/measure.html
	@scripts/install-packages measure
	@cmake --build --preset release --target tessarok-measure
	@$(BUILD)/tools/tessarok-measure --ceilings build/ceiling.json --json build/measure.json --html build/measure.html

measure-unseen: data ## The same with texts that the word data were not made with: build/unseen.html
	@scripts/install-packages measure unseen
	@cmake --build --preset release --target tessarok-measure
	@$(BUILD)/tools/tessarok-measure --corpora tools/measure/unseen.json --half all \
	  --json build/unseen.json --html build/unseen.html

ceiling: data ## The best figures that the rules of the decision allow: build/ceiling.html
	@scripts/install-packages measure
	@cmake --build --preset release --target tessarok-measure
	@$(BUILD)/tools/tessarok-measure --ceiling --json build/ceiling.json --html build/ceiling.html

build/ceiling.json: tools/measure/corpora.json
	@$(MAKE) --no-print-directory ceiling > build/ceiling.txt

frequencies: $(BUILD)/build.ninja ## Count the words of the corpora anew: tools/data/frequencies_*.tsv
	@scripts/install-packages measure frequencies
	@cmake --build --preset release --target tessarok-count-words
	@scripts/count-words $(BUILD)/tools/tessarok-count-words

format: ## Format every source file
	@scripts/install-packages format
	@scripts/format

check-format: ## Check the format of every source file
	@scripts/install-packages format
	@scripts/format --check

lint: ## Check every source file with clang-tidy (takes minutes)
	@scripts/install-packages build lint
	@cmake --preset clang > /dev/null
	@scripts/lint build/clang

strict: ## Build with both compilers, warnings as errors
	@scripts/install-packages build lint
	@cmake --preset debug > /dev/null && cmake --build --preset debug --target all benches tessarok-count-words
	@cmake --preset clang > /dev/null && cmake --build --preset clang --target all benches tessarok-count-words

sanitize: data ## Run the tests under the address and undefined-behaviour sanitizers
	@scripts/install-packages test
	@cmake --preset asan > /dev/null
	cmake --build --preset asan
	ctest --preset asan -j $(JOBS)

sanitize-threads: data ## Run the tests under the thread sanitizer
	@scripts/install-packages test
	@cmake --preset tsan > /dev/null
	cmake --build --preset tsan
	ctest --preset tsan -j $(JOBS)

coverage: data ## Measure the corrector's branch coverage: build/coverage/report/index.html
	@scripts/install-packages test coverage
	@cmake --preset coverage > /dev/null
	cmake --build --preset coverage --target tessarok tessarok_text_tests tessarok_words_tests tessarok_typing_tests tessarok_app_tests tessarok_posix_tests tessarok_allocation_tests tessarok_system_tests tessarok_story_check tessarok_fuzz
	@find build/coverage -name '*.gcda' -delete
	ctest --preset coverage -j $(JOBS) -L corrector -E '$(THOROUGH_TESTS)'
	@scripts/coverage build/coverage

recordings: build data ## Record the moving pictures of the README: a terminal and a window
	@scripts/install-packages recordings
	@scripts/record-terminal $(BUILD)/tessarok Resources docs/images/terminal.svg
	@scripts/record-window $(BUILD)/tessarok Resources docs/images/window.gif

macos-app: data ## Compile, link and check Tessarok.app for both kinds of Mac
	@scripts/install-packages macos
	@packaging/macos/cross-compile build/macos-app

page: page-files ## Build the page to try it in a browser, build/page/, and serve it
	@packaging/web/serve build/page

page-files: data
	@scripts/install-packages page
	@source=$$(scripts/get-utf8proc build/page-module) && \
	  cmake --preset page -DTESSAROK_UTF8PROC_SOURCE="$$source" > /dev/null
	@cmake --build build/page-module --target tessarok_page
	@cmake --build --preset release --target tessarok-pack-page
	@$(BUILD)/tools/tessarok-pack-page build/page-module/words Resources/*.txt
	@packaging/web/build build/page-module/tessarok.wasm build/page-module/words build/page

test-page: page-files build ## Type into the page in Chromium and Firefox (installs both)
	@scripts/install-packages test-page
	@cmake --build --preset release --target tessarok_page_sentences
	@tests/desktops/web/check-page build/page $(BUILD)/tessarok Resources $(BUILD)/tests/desktops/web/tessarok_page_sentences

bench-page: page-files build ## Measure the page in both browsers, beside the program: build/page.json
	@scripts/install-packages test-page
	@tests/desktops/web/check-page build/page $(BUILD)/tessarok Resources - --figures build/page.json

packages: data ## Make the packages for Linux and look at them: build/packages/
	@scripts/install-packages packages
	@packaging/linux/make-packages build/packages build/sysroot
	@packaging/linux/check-packages build/packages

check-reproducible: packages ## Make the packages once more elsewhere and compare the bytes
	@scripts/install-packages check-reproducible
	@packaging/linux/check-reproducible build/packages build/sysroot

test-packages: packages ## Install, upgrade, use and purge the packages in a clean Debian (as root)
	@scripts/install-packages test-packages
	@packaging/linux/test-packages build/packages build/systems

release: ## Make what is offered for download, of a clean checkout: build/release-VERSION/; TAG=v1.2.3 checks it
	@packaging/linux/make-release --check
	@$(MAKE) --no-print-directory packages
	@packaging/linux/make-release build/packages "build/release-$$(packaging/linux/version)" $(TAG)

install: build data ## Install under DESTDIR and the configured prefix
	@cmake --install $(BUILD)

clean: ## Remove everything that was built
	rm -rf build

$(BUILD)/build.ninja: CMakePresets.json
	@scripts/install-packages build
	@cmake --preset release > /dev/null
	@touch $@
