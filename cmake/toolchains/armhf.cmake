# SPDX-License-Identifier: MIT
# 32-bit ARM with hardware floating point, by Debian's cross compiler; programs run under qemu-user.
set(_triplet arm-linux-gnueabihf)
set(_architecture armhf)
set(_processor arm)
include("${CMAKE_CURRENT_LIST_DIR}/arm.cmake")
