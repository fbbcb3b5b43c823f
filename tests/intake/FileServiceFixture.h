// The fixture of the file service's tests: a fake host, a gate that records, and a folder for the files.
#pragma once

#include "orderservice/intake/FileService.h"
#include "tests/support/Builders.h"
#include "tests/support/DoorFakes.h"
#include "tests/support/FakeClock.h"
#include "tests/support/FakeHost.h"
#include "tests/support/TempFolder.h"

#include <gtest/gtest.h>

#include <string>

class CFileServiceFixture : public testing::Test {
protected:
    void addStrategy(int channel, const std::string& file) {
        registry.strategies.insert(channel, CStrategyBuilder().channel(channel).file(folder.path(file)));
    }
    const TC::CIntakeReport& report() const { return host.audit.reports.at(0); }

    CTempFolder folder;
    CFakeClock clock;
    CFakeHost host;
    CRecordingGate gate;
    CPlainRegistry registry;
    TC::CFileService service{gate, registry};
};
