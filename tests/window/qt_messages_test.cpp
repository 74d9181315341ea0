#include "services/failure.h"
#include "window/qt_messages.h"

#include <QCoreApplication>
#include <QTimer>

#include <gtest/gtest.h>

#include <functional>

namespace qndr::testing {
namespace {

class QtMessagesTest : public ::testing::Test {
  protected:
    void Post(const std::function<void()>& message) {
        QMetaObject::invokeMethod(&receiver, message, Qt::QueuedConnection);
    }
    std::unique_ptr<services::WaitableTimer> Timer(std::int32_t milliseconds, const std::string& name) {
        auto timer = messages.Create(name);
        timer->Set(-10'000 * milliseconds, -1);
        return timer;
    }
    /// Waits to the end and tells how often it woke up before.
    int Wait(services::WaitableTimer& timer) {
        int wakes = 0;
        for (; !timer.WaitForMessages(); ++wakes) {
            messages.ProcessMessages();
        }
        return wakes;
    }

    QtMessages messages;
    QObject receiver;
};

TEST_F(QtMessagesTest, TickWhoseWorkIsPostedArrivesInsideThatWork) {
    QTimer timer;
    int depth = 0;
    QObject::connect(&timer, &QTimer::timeout, [&] {
        Post([&] {
            if (++depth < 3) {
                messages.ProcessMessages();
            }
        });
    });
    timer.start(0);
    messages.ProcessMessages();
    EXPECT_EQ(depth, 3);
}

TEST_F(QtMessagesTest, WaitEndsWithTheTimerAndWakesForEachMessage) {
    const auto hour = Timer(200'000, "hour");
    int delivered = 0;
    Post([&] { ++delivered; });
    EXPECT_FALSE(hour->WaitForMessages());
    EXPECT_EQ(delivered, 1);

    const auto moment = Timer(20, "moment");
    Post([&] { ++delivered; });
    EXPECT_LT(Wait(*moment), 20) << "it sleeps in between";
    EXPECT_EQ(delivered, 2);
    EXPECT_TRUE(moment->WaitForMessages()) << "stays due";
    const auto never = messages.Create("never");
    Post([] {});
    EXPECT_FALSE(never->WaitForMessages());
    EXPECT_THROW(never->Set(1, 0), services::Failure);
}

TEST_F(QtMessagesTest, TimersOfOneNameAreOne) {
    const auto first = Timer(200'000, "one");
    EXPECT_FALSE(first->AlreadyExists());
    {
        const auto second = messages.Create("one");
        EXPECT_TRUE(second->AlreadyExists());
        second->Set(-1, -1);
    }
    Wait(*first);
    EXPECT_FALSE(messages.Create("another")->AlreadyExists());
}

} // namespace
} // namespace qndr::testing
