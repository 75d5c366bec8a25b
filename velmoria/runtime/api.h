#pragma once

/// Marks what libvelmoria.so shows to a host; everything else stays hidden inside the library.
#define VELMORIA_API __attribute__((visibility("default")))
