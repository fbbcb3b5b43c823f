#pragma once

#include "orderservice/gates/OrderConfirmer.h"
#include "orderservice/platform/IntakeAudit.h"
#include "orderservice/records/CommandParam.h"

#include <string>

/// Describes a command that reached the host, as one line for transcripts.
std::string describe(const TC::COrderComandParam& command);
/// The fields that describe() leaves out because most commands have the same values.
std::string describeDetails(const TC::COrderComandParam& command);
/// Describes a question to the user, with its rows and the remarks that are not empty.
std::string describe(const TC::CConfirmQuestion& question);
std::string describe(const TC::CIntakeReport& report);
std::string describe(const TC::CDoorReport& report);
