#!/bin/sh
# Fails unless a program writes exactly the content of a file.
"$1" | diff "$2" -
