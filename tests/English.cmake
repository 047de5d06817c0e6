# Read by ctest before it runs anything: the environment of all tests.
set(ENV{LC_ALL} C.UTF-8)
set(ENV{LANGUAGE} "")
