#!/bin/sh
# tests the library under the address and undefined behaviour sanitizers, with inputs of the fuzzers
exec tools/test_preset.sh asan units
