// Names that an application's other headers take away: those of Windows, of macOS's AssertMacros and Objective-C, of
// Qt, of X11 and of GLib. Not among them `Status`, for which X11 has a macro too, as it has a record here: such a host
// includes this library first, or undefines that name.
#pragma once

#define ABSOLUTE 1
#define Always 2
#define Bool int
#define BOOL int
#define check(assertion)
#define CONST const
#define CurrentTime 0L
#define DEBUG 1
#define DELETE (0x00010000L)
#define DOMAIN 1
#define emit
#define ERROR 0
#define False 0
#define far
#define foreach for
#define forever for (;;)
#define I (1)
#define IGNORE 0
#define IN
#define interface struct
#define linux 1
#define major(device) device
#define max(a, b) (((a) > (b)) ? (a) : (b))
#define min(a, b) (((a) < (b)) ? (a) : (b))
#define minor(device) device
#define near
#define nil nullptr
#define NO false
#define None 0L
#define OPAQUE 2
#define OPTIONAL
#define OUT
#define OVERFLOW 3
#define PASCAL
#define require(assertion, label)
#define signals public
#define slots
#define small char
#define STRICT 1
#define Success 0
#define TRANSPARENT 1
#define True 1
#define unix 1
#define verify(assertion)
#define VOID void
#define YES true
