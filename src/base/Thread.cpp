#include "orderservice/base/Thread.h"

#include <QCoreApplication>
#include <QThread>

#include <pthread.h>

#include <string>

namespace utils {
namespace {

thread_local int t_nLibraryCalls = 0;

} // namespace

CLibraryCall::CLibraryCall() {
    ++t_nLibraryCalls;
}

CLibraryCall::~CLibraryCall() {
    --t_nLibraryCalls;
}

bool CLibraryCall::isInProgress() {
    return t_nLibraryCalls > 0;
}

bool isMainThread() {
    const QCoreApplication* const app = QCoreApplication::instance();
    return app != nullptr && app->thread() == QThread::currentThread();
}

void setThreadName(const char* name) {
    constexpr std::size_t kSystemLimit = 15;
    pthread_setname_np(pthread_self(), std::string(name).substr(0, kSystemLimit).c_str());
}

} // namespace utils
