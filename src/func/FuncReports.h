#pragma once

#include "orderservice/base/KNError.h"
#include "orderservice/base/Log.h"

#include <QString>

#include <boost/function.hpp>

#include <string>

/// What function trading tells the user and its caller. Any thread.
namespace TC {

/// Receives the failures of calls: the number and the text of the call's trade key, and the error.
using COrderFailedCallback = boost::function<void(const int&, const std::string&, const utils::KNError&)>;

/// Shows a text on the message panel and writes it to the log at this level.
void sendMsg(const QString& text, utils::ELogLevel level);

/// The error of a failed call: number -1 and the text. An empty text is no error.
utils::KNError str2KNError(const std::string& text);

/// What a caller gets back with its failures.
struct CTradeKey {
    int m_nId = -1;
    std::string m_strKey;
};

/// Reads "free|key|number". Any other number of parts gives the defaults. Throws boost::bad_lexical_cast if
/// the third of three parts is no 32-bit number.
CTradeKey readTradeKey(const std::string& tradeKey);

/// Reports a failure to the caller whose trade key this is. Throws as readTradeKey. If the call-back throws,
/// the user gets a message. A call-back that causes failures itself is called for them too, up to 8 inside
/// each other on a thread; then the user gets a message instead. callback: may be empty.
void orderCheckFaild(const std::string& tradeKey, const utils::KNError& error,
                     const COrderFailedCallback& callback);

} // namespace TC
