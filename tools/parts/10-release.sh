#!/bin/sh
# builds the library and the tool as they are installed, and tests the tool
# packages: i2c-tools
exec tools/test_preset.sh release product
