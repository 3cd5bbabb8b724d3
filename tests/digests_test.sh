#!/bin/sh
# SPDX-License-Identifier: MIT
# The numbers that nobody computes: the gas data file and the printed tables, each against its digest in tests/tables.
# digests_test.sh SOURCE_DIRECTORY GAS_DATA. Comments and white space do not count. A change on purpose is a new digest there.
set -u
cd "$1" || exit 1
{
    echo "$(sha256sum <"$2" | cut -c1-64) gas.dat"
    for table in flow/*_tables.* gas/*_tables.* props/*_tables.* props/water/*_tables.*; do
        echo "$(sed 's,//.*,,' "$table" | tr -d ' \n' | sha256sum | cut -c1-64) $table"
    done
} | diff tests/tables/digests.txt - && echo "all tables as they were"
