#pragma once

#include "orderservice/platform/Host.h"

/// Functions of a library that the test loads with dlopen(RTLD_LOCAL). The test finds them by name with
/// dlsym.
extern "C" {
/// The addresses of the singletons as the loaded library sees them.
__attribute__((visibility("default"))) const void* serviceInLibrary();
__attribute__((visibility("default"))) const void* tradeClientInLibrary();
__attribute__((visibility("default"))) const void* messagesInLibrary();
/// Whether an exception of the order service that goes through the loaded library can be caught there by its
/// type.
__attribute__((visibility("default"))) bool catchesHostError();
__attribute__((visibility("default"))) bool catchesJsonError();
/// Whether the loaded library can connect one of its functions to a signal of the service.
__attribute__((visibility("default"))) bool connectsToService();
/// Whether a record that the program made can be cast to its own type in the loaded library.
__attribute__((visibility("default"))) bool castsRecord(const void* data);
}
