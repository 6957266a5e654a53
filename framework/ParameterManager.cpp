#include "ParameterManager.h"

#include "BoolParameter.h"
#include "EnumParameter.h"
#include "FloatParameter.h"
#include "IntParameter.h"
#include "Resources.h"
#include "StringParameter.h"

namespace
{
    std::unique_ptr<Parameter> createParameter (const juce::XmlElement& e, uint32_t index, const juce::String& name)
    {
        const auto type = e.getStringAttribute ("type", "float");
        const auto valueText = e.getStringAttribute ("value");

        if (type == "float")
        {
            const auto min = (float) e.getDoubleAttribute ("min", 0.0);
            const auto max = (float) e.getDoubleAttribute ("max", 1.0);
            return std::make_unique<FloatParameter> (index, name, min, max, valueText.getFloatValue());
        }

        if (type == "int")
        {
            auto p = std::make_unique<IntParameter> (index, name, e.getIntAttribute ("min", 0), e.getIntAttribute ("max", 127));
            p->setText (valueText, ChangeOrigin::quiet);
            return p;
        }

        if (type == "note")
            return std::make_unique<NoteParameter> (index, name, valueText.getIntValue());

        if (type == "string")
            return std::make_unique<StringParameter> (index, name, valueText);

        if (type == "bool" || type == "state")
        {
            auto p = std::make_unique<BoolParameter> (index, name, type == "state");
            p->setText (valueText, ChangeOrigin::quiet);
            return p;
        }

        if (type == "enum")
        {
            juce::StringArray items;
            const auto list = e.getStringAttribute ("enum");

            if (list.isNotEmpty())
                items.addTokens (list, ";", {});

            auto p = std::make_unique<EnumParameter> (index, name, items);
            p->setText (valueText, ChangeOrigin::quiet);
            return p;
        }

        return nullptr;
    }
}

ParameterManager::ParameterManager (Listener* l) : listener (l) {}

void ParameterManager::load (const juce::String& fileName)
{
    loadFromText (Resources::getText (fileName));
}

void ParameterManager::loadFromText (const juce::String& xmlText)
{
    const auto document = juce::parseXML (xmlText);

    if (document == nullptr || document->getTagName() != rootTag)
        return;

    for (auto* e = document->getChildByName ("param"); e != nullptr; e = e->getNextElementWithTagName ("param"))
    {
        const int index = e->getIntAttribute ("index", -1);
        const auto name = e->getStringAttribute ("name");

        // Any negative index is unusable as a key; -1 is what an absent one reads as.
        if (index < 0 || name.isEmpty())
            continue;

        if (auto parameter = createParameter (*e, (uint32_t) index, name))
        {
            parameter->setAutomatable (e->getBoolAttribute ("auto", false));
            addParameter (std::move (parameter), true);
        }
    }
}

void ParameterManager::addParameter (std::unique_ptr<Parameter> parameter, bool notify)
{
    if (parameter == nullptr)
        return;

    auto* added = parameter.get();

    {
        const juce::ScopedLock sl (listLock);

        if (added->getIndex() < numDirectIndices)
            direct[added->getIndex()].store (added, std::memory_order_release);

        parameters[added->getIndex()] = std::move (parameter);
    }

    if (notify && listener != nullptr)
        listener->parameterAdded (*added);
}

Parameter* ParameterManager::getParameter (uint32_t index) const
{
    if (index < numDirectIndices)
        return direct[index].load (std::memory_order_acquire);

    const juce::ScopedLock sl (listLock);
    const auto found = parameters.find (index);
    return found != parameters.end() ? found->second.get() : nullptr;
}

Parameter* ParameterManager::findParameter (const juce::String& name) const
{
    const juce::ScopedLock sl (listLock);

    for (const auto& entry : parameters)
        if (entry.second->getName() == name)
            return entry.second.get();

    return nullptr;
}

bool ParameterManager::hasParameter (uint32_t index) const
{
    return getParameter (index) != nullptr;
}

int ParameterManager::getNumParameters() const
{
    const juce::ScopedLock sl (listLock);
    return (int) parameters.size();
}

juce::Array<Parameter*> ParameterManager::getAllParameters() const
{
    const juce::ScopedLock sl (listLock);
    juce::Array<Parameter*> result;

    for (const auto& entry : parameters)
        result.add (entry.second.get());

    return result;
}

// Message thread. Parameters are only added while the plug-in is built, so
// the walk needs no copy of the list; the lock is the list's own and may be
// taken again by a listener looking a parameter up.
void ParameterManager::flushDeferredNotifications()
{
    const juce::ScopedLock sl (listLock);

    for (const auto& entry : parameters)
        entry.second->flushDeferredNotification();
}
