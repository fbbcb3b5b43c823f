#pragma once

/// Marks what the shared library, or the kit, exports: the classes and functions that a host uses. All else
/// is hidden and stays inside the library. A class whose type must be the same everywhere in the process also
/// has the mark: the host derives from it, throws or catches it, or casts to it. So has a template that holds
/// a singleton, and the class that is its argument. A host defines nothing to use the library.
#define ORDERSERVICE_EXPORT __attribute__((visibility("default")))
