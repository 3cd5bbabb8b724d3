# SPDX-License-Identifier: MIT
# 32-bit ARM with floating point in software, by Debian's cross compiler; programs run under qemu-user.
set(_triplet arm-linux-gnueabi)
set(_architecture armel)
set(_processor arm)
include("${CMAKE_CURRENT_LIST_DIR}/arm.cmake")
