# SPDX-License-Identifier: MIT
# 64-bit ARM, by Debian's cross compiler; programs run under qemu-user.
set(_triplet aarch64-linux-gnu)
set(_architecture arm64)
set(_processor aarch64)
include("${CMAKE_CURRENT_LIST_DIR}/arm.cmake")
