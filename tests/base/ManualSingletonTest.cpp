#include "orderservice/base/ManualSingleton.h"

#include <gtest/gtest.h>

namespace {

class COwned : public utils::CManualSingletonT<COwned> {
public:
    explicit COwned(int& deleted) : m_deleted(deleted) {}
    ~COwned() { ++m_deleted; }

private:
    int& m_deleted;
};

class CManualSingleton : public testing::Test {
protected:
    ~CManualSingleton() override { COwned::release(); }
    int deleted = 0;
};

TEST_F(CManualSingleton, IsNullAtFirst) {
    EXPECT_EQ(COwned::instance(), nullptr);
}

TEST_F(CManualSingleton, KeepsTheObjectUntilRelease) {
    auto* object = new COwned(deleted);
    COwned::initInstance(object);
    EXPECT_EQ(COwned::instance(), object);
    EXPECT_EQ(deleted, 0);
    COwned::release();
    EXPECT_EQ(COwned::instance(), nullptr);
    EXPECT_EQ(deleted, 1);
}

TEST_F(CManualSingleton, SecondObjectStaysTheCallers) {
    auto* object = new COwned(deleted);
    COwned::initInstance(object);
    {
        int deletedSecond = 0;
        COwned second(deletedSecond);
        COwned::initInstance(&second);
        EXPECT_EQ(COwned::instance(), object);
    }
    COwned::release();
    EXPECT_EQ(deleted, 1);
}

TEST_F(CManualSingleton, ReleaseWithoutAnObjectDoesNothing) {
    COwned::release();
    EXPECT_EQ(COwned::instance(), nullptr);
}

TEST_F(CManualSingleton, CanLiveAgainAfterRelease) {
    COwned::initInstance(new COwned(deleted));
    COwned::release();
    auto* next = new COwned(deleted);
    COwned::initInstance(next);
    EXPECT_EQ(COwned::instance(), next);
    COwned::release();
    EXPECT_EQ(deleted, 2);
}

} // namespace
