#pragma once

/// Marks the classes and functions that the shared library, or the kit, exports because a host uses them. All
/// others are hidden and stay inside the library. A class also needs the mark if a host derives from it,
/// throws or catches it, or casts to it: its type must be the same everywhere in the process. A template that
/// holds a singleton needs the mark, and so does the class that is its argument. A host does not have to
/// define a macro to use the library.
#define ORDERSERVICE_EXPORT __attribute__((visibility("default")))
