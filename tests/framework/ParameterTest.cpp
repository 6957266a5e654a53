#include "framework/FloatParameter.h"
#include "framework/IntParameter.h"
#include "framework/StringParameter.h"

#include <juce_events/juce_events.h>

#include <gtest/gtest.h>

#include <cmath>
#include <thread>

namespace
{
    struct CountingListener : Parameter::Listener, Parameter::ImmediateListener
    {
        void parameterChanged (Parameter& p) override
        {
            ++calls;
            lastValue = p.getValue();
            thread = std::this_thread::get_id();
            if (order != nullptr)
                order->push_back (this);
        }

        void parameterChanged (Parameter& p, ChangeOrigin origin) override
        {
            lastOrigin = origin;
            parameterChanged (p);
        }

        ChangeOrigin lastOrigin = ChangeOrigin::quiet;
        int calls = 0;
        float lastValue = -1.0f;
        std::thread::id thread;
        std::vector<const CountingListener*>* order = nullptr;
    };
}

// The decay time, and the preset number as the host sets it (the name's cut
// is the preset display's, in the keyboard test).
TEST (ParameterKinds, EverySetterConvertsIntoTheRangeAndClamps)
{
    FloatParameter decay (21, "Decay Time", 0.0f, 1000.0f, 0.0f);
    IntParameter number (110000, "Current Preset Number", 0, 127, 0);
    using Set = void (*) (Parameter&);
    const struct { Parameter& p; Set set; juce::String text; } rows[] = {
        { decay, [] (Parameter& p) { p.setNormalisedValue (1.7f, ChangeOrigin::quiet); }, "1000.000000000" },
        { decay, [] (Parameter& p) { p.setNormalisedValue (-0.2f, ChangeOrigin::quiet); }, "0.000000000" },
        { decay, [] (Parameter& p) { p.setNormalisedValue (0.25f, ChangeOrigin::quiet); }, "250.000000000" },
        { decay, [] (Parameter& p) { p.setValue (std::nanf (""), ChangeOrigin::quiet); }, "0.000000000" }, // NaN compares false with both bounds
        { decay, [] (Parameter& p) { p.setText ("abc", ChangeOrigin::quiet); }, "0.000000000" },
        { decay, [] (Parameter& p) { p.setText ("250", ChangeOrigin::quiet); }, "250.000000000" },
        { number, [] (Parameter& p) { p.setNormalisedValue (1.0f, ChangeOrigin::quiet); }, "127" },
        { number, [] (Parameter& p) { p.setNormalisedValue (0.5f, ChangeOrigin::quiet); }, "64" },
        { number, [] (Parameter& p) { p.setIntValue (500, ChangeOrigin::quiet); }, "127" },
        { number, [] (Parameter& p) { p.setText ("12", ChangeOrigin::quiet); }, "12" },
        { number, [] (Parameter& p) { p.setValue (std::nanf (""), ChangeOrigin::quiet); }, "0" },
    };

    for (size_t i = 0; i < std::size (rows); ++i)
    {
        decay.setValue (700.0f, ChangeOrigin::quiet);
        rows[i].set (rows[i].p);
        EXPECT_EQ (rows[i].p.getText(), rows[i].text) << "row " << i;
    }
}

// Each kind the plug-in uses stores and compares its own form, so each is
// checked. The host's text for a value is read from a clone, which must tell
// nobody of the value it is set to.
TEST (ParameterNotification, OnlyRealChangesNotifyAndClonesHaveNoListeners)
{
    FloatParameter level (7, "Late Diffusion", -1.0f, 3.0f, 2.0f);
    IntParameter number (1, "Number", 0, 7, 5);
    StringParameter name (4, "Name", "Concert hall", 32);

    for (Parameter* p : std::initializer_list<Parameter*> { &level, &number, &name })
    {
        CountingListener listener;
        p->addImmediateListener (&listener);
        const auto before = p->getText();
        p->setText (before, ChangeOrigin::editor);
        EXPECT_EQ (listener.calls, 0) << p->getName() << ": the same value again";

        auto copy = p->clone();
        EXPECT_EQ (copy->getText(), before);
        copy->setBoolValue (! copy->getBoolValue(), ChangeOrigin::editor);
        EXPECT_EQ (listener.calls, 0) << p->getName() << ": a clone has no listeners";

        p->setText (copy->getText(), ChangeOrigin::editor);
        EXPECT_EQ (listener.calls, 1) << p->getName();
        p->removeImmediateListener (&listener);
        p->setText (before, ChangeOrigin::editor);
        EXPECT_EQ (listener.calls, 1) << p->getName();
    }
}

TEST (ParameterNotification, ImmediateListenersHearTheOriginOnTheWriterAndDeferredOnesOnceWhenFlushed)
{
    FloatParameter p (0, "Level");
    std::vector<const CountingListener*> order;
    CountingListener first, second, deferred;
    first.order = second.order = &order;
    p.addImmediateListener (&first);
    p.addImmediateListener (&second);
    p.addImmediateListener (&first);
    p.addDeferredListener (&deferred);

    std::thread::id writer;
    std::thread ([&] {
        writer = std::this_thread::get_id();
        for (const auto value : { 0.1f, 0.2f, 0.3f })
            p.setValue (value, ChangeOrigin::midi);
    }).join();

    EXPECT_EQ (order, (std::vector<const CountingListener*> { &second, &first, &second, &first, &second, &first })) << "last added first; a second add is ignored";
    EXPECT_EQ (first.thread, writer);
    EXPECT_EQ (first.lastValue, 0.3f);
    EXPECT_EQ (first.lastOrigin, ChangeOrigin::midi);

    // Nothing is posted: the owner's poll delivers what is pending, once.
    juce::MessageManager::getInstance()->runDispatchLoopUntil (30);
    EXPECT_EQ (deferred.calls, 0);
    EXPECT_TRUE (p.hasDeferredNotification());
    p.flushDeferredNotification();
    p.flushDeferredNotification();
    EXPECT_EQ (deferred.calls, 1);
    EXPECT_FLOAT_EQ (deferred.lastValue, 0.3f);

    p.setValue (0.5f, ChangeOrigin::host);
    p.flushDeferredNotification();
    EXPECT_EQ (deferred.calls, 2) << "a later change is pending again";

    p.setValue (0.9f, ChangeOrigin::quiet);
    p.flushDeferredNotification();
    EXPECT_EQ (deferred.calls, 2);
    EXPECT_EQ (first.lastValue, 0.5f) << "a quiet change tells nobody";
}
