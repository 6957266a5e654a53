#include "XmlReading.h"

#include <cstring>

namespace
{
    using CharPointer = juce::String::CharPointerType;

    // Moves past the first occurrence of the terminator; false when the text
    // ends first.
    bool skipPast (CharPointer& p, const char* terminator)
    {
        const auto index = p.indexOf (juce::CharPointer_ASCII (terminator));

        if (index < 0)
            return false;

        p += index + (int) std::strlen (terminator);
        return true;
    }

    bool isNameEnd (juce::juce_wchar c) noexcept
    {
        return c == 0 || c == '>' || c == '/' || juce::CharacterFunctions::isWhitespace (c);
    }

    juce::String readName (CharPointer& p)
    {
        const auto start = p;

        while (! isNameEnd (*p))
            ++p;

        return juce::String (start, p);
    }

    // Moves past the '>' that ends a tag, ignoring any inside quoted
    // attribute values; tells whether the tag closed itself with "/>".
    bool skipRestOfTag (CharPointer& p, bool& selfClosing)
    {
        juce::juce_wchar quote = 0, previous = 0;

        for (;;)
        {
            const auto c = p.getAndAdvance();

            if (c == 0)
                return false;

            if (quote != 0)
            {
                if (c == quote)
                    quote = 0;
            }
            else if (c == '"' || c == '\'')
            {
                quote = c;
            }
            else if (c == '>')
            {
                selfClosing = previous == '/';
                return true;
            }

            previous = c;
        }
    }

    bool isNameCharacter (juce::juce_wchar c) noexcept
    {
        return juce::CharacterFunctions::isLetterOrDigit (c) || c == '_' || c == ':' || c == '.' || c == '-';
    }

    // With p just past a '&': "name;", "#digits;" or "#xhexdigits;" for a
    // character. Moves p past what it read.
    bool readsWellFormedReference (CharPointer& p)
    {
        if (*p != '#')
        {
            int length = 0;

            for (; isNameCharacter (*p); ++p)
                ++length;

            return length > 0 && *p == ';';
        }

        ++p;
        const bool hex = *p == 'x' || *p == 'X';

        if (hex)
            ++p;

        juce::int64 code = 0;
        int digits = 0;

        for (;; ++p)
        {
            const int digit = hex ? juce::CharacterFunctions::getHexDigitValue (*p)
                                  : (juce::CharacterFunctions::isDigit (*p) ? (int) (*p - '0') : -1);

            if (digit < 0)
                break;

            if (++digits > 8)
                return false;

            code = code * (hex ? 16 : 10) + digit;
        }

        // JUCE's writer spells control characters this way too; a surrogate
        // stands for no character.
        const bool isCharacter = code > 0 && code <= 0x10ffff && ! (code >= 0xd800 && code <= 0xdfff);
        return digits > 0 && isCharacter && *p == ';';
    }

    // UTF-8 as the standard has it: no overlong forms, no surrogates, nothing
    // past U+10FFFF. JUCE's own check lets overlong forms through, which its
    // strings then measure and copy differently.
    bool isStrictUtf8 (const char* text, size_t numBytes)
    {
        const auto* bytes = reinterpret_cast<const unsigned char*> (text);

        for (size_t i = 0; i < numBytes;)
        {
            const auto lead = bytes[i];
            int length = 0;
            unsigned char low = 0x80, high = 0xbf;

            if (lead < 0x80)                    length = 1;
            else if (lead >= 0xc2 && lead <= 0xdf) length = 2;
            else if (lead == 0xe0)               { length = 3; low = 0xa0; }
            else if (lead == 0xed)               { length = 3; high = 0x9f; }
            else if (lead >= 0xe1 && lead <= 0xef) length = 3;
            else if (lead == 0xf0)               { length = 4; low = 0x90; }
            else if (lead == 0xf4)               { length = 4; high = 0x8f; }
            else if (lead >= 0xf1 && lead <= 0xf3) length = 4;
            else                                 return false;

            if (numBytes - i < (size_t) length)
                return false;

            for (int k = 1; k < length; ++k)
            {
                const auto next = bytes[i + (size_t) k];

                if (next < (k == 1 ? low : 0x80) || next > (k == 1 ? high : 0xbf))
                    return false;
            }

            i += (size_t) length;
        }

        return true;
    }
}

bool hasBalancedTags (const juce::String& text, int maxDepth)
{
    auto p = text.getCharPointer();
    juce::StringArray open;

    for (;;)
    {
        const auto index = p.indexOf ((juce::juce_wchar) '<');

        if (index < 0)
            return open.isEmpty();

        p += index + 1;
        bool selfClosing = false;

        if (*p == '/')
        {
            ++p;

            if (open.isEmpty() || readName (p) != open[open.size() - 1] || ! skipRestOfTag (p, selfClosing))
                return false;

            open.remove (open.size() - 1);
        }
        else if (p.compareUpTo (juce::CharPointer_ASCII ("!--"), 3) == 0)
        {
            if (! skipPast (p, "-->"))
                return false;
        }
        else if (p.compareUpTo (juce::CharPointer_ASCII ("![CDATA["), 8) == 0)
        {
            if (! skipPast (p, "]]>"))
                return false;
        }
        else if (*p == '?' || *p == '!')
        {
            if (! skipPast (p, ">"))
                return false;
        }
        else
        {
            auto name = readName (p);

            if (name.isEmpty() || ! skipRestOfTag (p, selfClosing))
                return false;

            if (! selfClosing)
            {
                if (open.size() >= maxDepth)
                    return false;

                open.add (std::move (name));
            }
        }
    }
}

bool hasOnlyPlainMarkup (const juce::String& text)
{
    auto p = text.getCharPointer();
    p.incrementToEndOfWhitespace();

    // The declaration may lead the document.
    if (p.compareUpTo (juce::CharPointer_ASCII ("<?"), 2) == 0 && ! skipPast (p, "?>"))
        return false;

    // Searched as plain text, not by tags: where this scan and JUCE's parser
    // would read the tags differently, the text is still refused.
    for (;;)
    {
        const auto index = p.indexOf ((juce::juce_wchar) '<');

        if (index < 0)
            return true;

        p += index + 1;

        if (*p == '?')
            return false;

        if (*p == '!' && p.compareUpTo (juce::CharPointer_ASCII ("!--"), 3) != 0
                      && p.compareUpTo (juce::CharPointer_ASCII ("![CDATA["), 8) != 0)
            return false;
    }
}

// Searched as plain text, comments and CDATA included, for the same reason as
// the markup above; our documents never hold a bare '&' anywhere.
bool hasOnlyWellFormedReferences (const juce::String& text)
{
    for (auto p = text.getCharPointer();;)
    {
        const auto c = p.getAndAdvance();

        if (c == 0)
            return true;

        if (c == '&' && ! readsWellFormedReference (p))
            return false;
    }
}

std::unique_ptr<juce::XmlElement> parseXmlText (const juce::String& text)
{
    if (! hasOnlyPlainMarkup (text) || ! hasOnlyWellFormedReferences (text) || ! hasBalancedTags (text, maxXmlNestingDepth))
        return nullptr;

    return juce::parseXML (text);
}

std::unique_ptr<juce::XmlElement> parseXmlUtf8 (const void* data, size_t numBytes)
{
    auto* text = static_cast<const char*> (data);

    if (text == nullptr || numBytes > (size_t) maxXmlFileSize)
        return nullptr;

    if (numBytes >= 3 && juce::CharPointer_UTF8::isByteOrderMark (text))
    {
        text += 3;
        numBytes -= 3;
    }

    // The text ends at a zero byte, as the chunk's framing ends it.
    numBytes = strnlen (text, numBytes);

    if (! isStrictUtf8 (text, numBytes))
        return nullptr;

    return parseXmlText (juce::String::fromUTF8 (text, (int) numBytes));
}

std::unique_ptr<juce::XmlElement> parseXmlFile (const juce::File& file)
{
    juce::MemoryBlock bytes;

    if (! file.existsAsFile() || file.getSize() > maxXmlFileSize || ! file.loadFileAsData (bytes))
        return nullptr;

    return parseXmlUtf8 (bytes.getData(), bytes.getSize());
}

std::unique_ptr<juce::XmlElement> parseXmlChunk (const void* data, int sizeInBytes)
{
    constexpr uint32_t xmlChunkMagic = 0x21324356;

    if (data == nullptr || sizeInBytes <= 8 || juce::ByteOrder::littleEndianInt (data) != xmlChunkMagic)
        return nullptr;

    const auto textLength = juce::ByteOrder::littleEndianInt (juce::addBytesToPointer (data, 4));
    const auto available = (uint32_t) sizeInBytes - 8;
    return parseXmlUtf8 (static_cast<const char*> (data) + 8, juce::jmin (textLength, available));
}
