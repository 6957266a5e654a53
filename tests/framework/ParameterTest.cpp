#include "framework/BoolParameter.h"
#include "framework/EnumParameter.h"
#include "framework/FloatParameter.h"
#include "framework/IntParameter.h"
#include "framework/StringParameter.h"

#include <gtest/gtest.h>

#include <cmath>
#include <thread>

namespace
{
    struct CountingListener : Parameter::Listener
    {
        void parameterChanged (Parameter& p) override
        {
            ++calls;
            lastValue = p.getValue();
            thread = std::this_thread::get_id();
            if (order != nullptr)
                order->push_back (tag);
        }

        int calls = 0;
        float lastValue = -1.0f;
        std::thread::id thread;
        std::vector<int>* order = nullptr;
        int tag = 0;
    };

    void runMessageLoop()
    {
        juce::MessageManager::getInstance()->runDispatchLoopUntil (30);
    }
}

TEST (FloatParameter, ClampsEverySetterIntoItsRange)
{
    FloatParameter p (0, "Level", 0.0f, 1.0f, 0.5f);

    p.setNormalisedValue (1.7f, false);
    EXPECT_EQ (p.getValue(), 1.0f);
    p.setNormalisedValue (-0.2f, false);
    EXPECT_EQ (p.getValue(), 0.0f);
    p.setValue (0.7f, false);
    p.setValue (std::nanf (""), false);
    EXPECT_EQ (p.getValue(), 0.0f) << "NaN compares false with both bounds and becomes min";
    p.setValue (0.7f, false);
    p.setText ("abc", false);
    EXPECT_EQ (p.getValue(), 0.0f);
    p.setText ("0.25", false);
    EXPECT_FLOAT_EQ (p.getValue(), 0.25f);
    p.setIntValue (3, false);
    EXPECT_EQ (p.getValue(), 1.0f);
}

TEST (FloatParameter, ConvertsBetweenUnitsOnAWideRange)
{
    FloatParameter decay (21, "Decay Time", 0.0f, 1000.0f, 0.0f);

    decay.setValue (500.0f, false);
    EXPECT_FLOAT_EQ (decay.getNormalisedValue(), 0.5f);
    decay.setBoolValue (true, false);
    EXPECT_EQ (decay.getValue(), 1000.0f);
    decay.setBoolValue (false, false);
    EXPECT_EQ (decay.getValue(), 0.0f);
    decay.setNormalisedValue (0.25f, false);
    EXPECT_FLOAT_EQ (decay.getValue(), 250.0f);

    FloatParameter signedRange (1, "Offset", -5.0f, 5.0f, -2.7f);
    EXPECT_EQ (signedRange.getIntValue(), -2) << "truncated toward zero";
    EXPECT_EQ (signedRange.getText(), "-2.700000048");
}

TEST (FloatParameter, FlagIsTheUpperHalfMidpointIncluded)
{
    FloatParameter p (0, "Switch", 0.0f, 1.0f, 0.5f);
    EXPECT_TRUE (p.getBoolValue());
    p.setValue (std::nextafter (0.5f, 0.0f), false);
    EXPECT_FALSE (p.getBoolValue());
    p.setValue (1.0f, false);
    EXPECT_TRUE (p.getBoolValue());
}

TEST (FloatParameter, CloneCopiesEverythingButListeners)
{
    FloatParameter p (7, "Late Diffusion", -1.0f, 3.0f, 2.0f);
    p.setAutomatable (true);
    CountingListener listener;
    p.addImmediateListener (&listener);

    auto copy = p.clone();
    EXPECT_EQ (copy->getIndex(), 7u);
    EXPECT_EQ (copy->getName(), "Late Diffusion");
    EXPECT_TRUE (copy->isAutomatable());
    EXPECT_EQ (copy->getValue(), 2.0f);
    EXPECT_FLOAT_EQ (copy->getNormalisedValue(), 0.75f);

    copy->setValue (0.0f, true);
    EXPECT_EQ (listener.calls, 0);
    EXPECT_EQ (p.getValue(), 2.0f);

    p.copyValueFrom (*copy, true);
    EXPECT_EQ (p.getValue(), 0.0f);
    EXPECT_EQ (listener.calls, 1);
}

TEST (ParameterNotification, SameValueNotifiesOnceAndSilentSetsNotifyNobody)
{
    FloatParameter p (0, "Level");
    CountingListener listener;
    p.addImmediateListener (&listener);

    p.setValue (0.3f, true);
    p.setValue (0.3f, true);
    EXPECT_EQ (listener.calls, 1);

    p.setValue (0.4f, false);
    EXPECT_EQ (listener.calls, 1);
    EXPECT_FLOAT_EQ (p.getValue(), 0.4f);

    p.removeImmediateListener (&listener);
    p.setValue (0.9f, true);
    EXPECT_EQ (listener.calls, 1);
}

TEST (ParameterNotification, ImmediateListenersRunOnTheChangingThreadLastAddedFirst)
{
    FloatParameter p (0, "Level");
    std::vector<int> order;
    CountingListener first, second;
    first.order = second.order = &order;
    first.tag = 1;
    second.tag = 2;
    p.addImmediateListener (&first);
    p.addImmediateListener (&second);
    p.addImmediateListener (&first);

    std::thread::id writer;
    std::thread ([&] { writer = std::this_thread::get_id(); p.setValue (0.6f, true); }).join();

    EXPECT_EQ (order, (std::vector<int> { 2, 1 }));
    EXPECT_EQ (first.thread, writer);
    EXPECT_EQ (first.lastValue, 0.6f);
}

TEST (ParameterNotification, DeferredListenersGetOneCoalescedCallOnTheMessageThread)
{
    FloatParameter p (0, "Level");
    CountingListener deferred;
    p.addDeferredListener (&deferred);

    std::thread ([&] {
        p.setValue (0.1f, true);
        p.setValue (0.2f, true);
        p.setValue (0.3f, true);
    }).join();

    EXPECT_EQ (deferred.calls, 0);
    runMessageLoop();
    EXPECT_EQ (deferred.calls, 1);
    EXPECT_FLOAT_EQ (deferred.lastValue, 0.3f);
    EXPECT_TRUE (juce::MessageManager::getInstance()->isThisTheMessageThread()
                 && deferred.thread == std::this_thread::get_id());

    p.setValue (0.5f, true);
    runMessageLoop();
    EXPECT_EQ (deferred.calls, 2) << "a later change posts again";

    p.setValue (0.9f, false);
    runMessageLoop();
    EXPECT_EQ (deferred.calls, 2);
}

TEST (IntParameter, StepsAndRanges)
{
    IntParameter preset (110000, "Current Preset Number", 0, 127, 0);
    preset.setNormalisedValue (1.0f, false);
    EXPECT_EQ (preset.getIntValue(), 127);
    preset.setNormalisedValue (0.5f, false);
    EXPECT_EQ (preset.getIntValue(), 64);
    preset.setIntValue (50, false);
    EXPECT_FLOAT_EQ (preset.getNormalisedValue(), 50.0f / 127.0f);
    preset.setIntValue (500, false);
    EXPECT_EQ (preset.getIntValue(), 127);
    preset.setText ("12", false);
    EXPECT_EQ (preset.getText(), "12");
    preset.setValue (std::nanf (""), false);
    EXPECT_EQ (preset.getIntValue(), 0);

    NoteParameter note (3, "Root", 200);
    EXPECT_EQ (note.getIntValue(), 127);
    note.setIntValue (60, false);
    EXPECT_EQ (note.getText(), "C4");
    note.setText ("A4", false);
    EXPECT_EQ (note.getIntValue(), 69);
    note.setText ("-3", false);
    EXPECT_EQ (note.getIntValue(), 0);
    EXPECT_EQ (note.clone()->getText(), "C-1");
}

TEST (BoolParameter, TextFlagAndStateFlag)
{
    BoolParameter state (5, "Bypass", true);
    EXPECT_TRUE (state.isState());
    EXPECT_TRUE (dynamic_cast<BoolParameter&> (*state.clone()).isState());

    state.setText ("true", false);
    EXPECT_TRUE (state.getBoolValue());
    EXPECT_EQ (state.getText(), "true");
    state.setText ("0", false);
    EXPECT_FALSE (state.getBoolValue());
    state.setNormalisedValue (0.5f, false);
    EXPECT_EQ (state.getNormalisedValue(), 1.0f);

    CountingListener listener;
    state.addImmediateListener (&listener);
    state.setIntValue (7, true);
    state.setBoolValue (true, true);
    EXPECT_EQ (listener.calls, 0) << "already on";
    state.setBoolValue (false, true);
    EXPECT_EQ (listener.calls, 1);
}

TEST (EnumParameter, ItemsByNameAndPosition)
{
    juce::StringArray items;
    items.addTokens ("low;medium;high", ";", {});
    EnumParameter p (9, "Mode", items);
    ASSERT_EQ (p.getItems().size(), 3);

    p.setText ("HIGH", false);
    EXPECT_EQ (p.getIntValue(), 2);
    EXPECT_EQ (p.getText(), "high");
    p.setNormalisedValue (0.5f, false);
    EXPECT_EQ (p.getText(), "medium");
    p.setValue (9.0f, false);
    EXPECT_EQ (p.getIntValue(), 2);
    p.setText ("0", false);
    EXPECT_EQ (p.getNormalisedValue(), 0.0f);

    EnumParameter empty (10, "Empty", {});
    empty.setNormalisedValue (1.0f, false);
    EXPECT_EQ (empty.getIntValue(), 0);
    EXPECT_EQ (empty.getText(), "");
}

TEST (StringParameter, LimitsLengthAndNotifiesOnRealChangesOnly)
{
    StringParameter name (110001, "Current Preset Name", "Concert hall", 32);
    CountingListener listener;
    name.addImmediateListener (&listener);

    name.setText ("Concert hall", true);
    EXPECT_EQ (listener.calls, 0);
    name.setText (juce::String::repeatedString ("x", 40), true);
    EXPECT_EQ (name.getText().length(), 32);
    EXPECT_EQ (listener.calls, 1);

    name.setIntValue (42, false);
    EXPECT_EQ (name.getIntValue(), 42);
    EXPECT_EQ (name.clone()->getText(), "42");
}
