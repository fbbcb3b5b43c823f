#pragma once

#include "platform/IntakeAudit.h"
#include "records/CommandParam.h"

#include <string>

/// What reached a host, as one line for transcripts.
std::string describe(const TC::COrderComandParam& command);
/// The fields that the line above leaves out: they are the same for most commands.
std::string describeDetails(const TC::COrderComandParam& command);
std::string describe(const TC::CIntakeReport& report);
std::string describe(const TC::CDoorReport& report);
