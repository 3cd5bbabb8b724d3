// SPDX-License-Identifier: MIT
// Keeps kalorfix.so loadable where the C library is older than the one it was built with. Included by the build ahead of
// every file of the library.
#pragma once

#include <features.h>

// exp, log and pow got a second version in glibc 2.29, without the old error handling around the same computation. The
// library wants results only, so it asks for the first one.
#if defined(__GLIBC__) && defined(__x86_64__) && !defined(__ILP32__)
#define KALORFIX_FIRST_GLIBC "GLIBC_2.2.5"
#elif defined(__GLIBC__) && defined(__arm__)
#define KALORFIX_FIRST_GLIBC "GLIBC_2.4"
#elif defined(__GLIBC__) && defined(__aarch64__)
#define KALORFIX_FIRST_GLIBC "GLIBC_2.17"
#endif

#ifdef KALORFIX_FIRST_GLIBC
__asm__(".symver exp,exp@" KALORFIX_FIRST_GLIBC);
__asm__(".symver log,log@" KALORFIX_FIRST_GLIBC);
__asm__(".symver pow,pow@" KALORFIX_FIRST_GLIBC);
#endif
