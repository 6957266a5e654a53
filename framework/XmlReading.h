#pragma once

#include <juce_core/juce_core.h>

// Parsing for every document the plug-in reads from outside (state chunks,
// settings, map and preset files). JUCE's parser is lenient where these
// readers cannot be: it takes "</" without its ">" as the end of every open
// element, so a document cut short there parses as a smaller, valid-looking
// one, and it recurses once per nesting level, so a hostile document nested
// a few hundred thousand levels deep exhausts the stack. The tags are
// therefore checked first: each one closed, start and end tags pairing by
// name, nothing left open at the end, and no nesting beyond maxXmlNestingDepth.
// A document type declaration is refused: JUCE's parser expands the entities
// it defines into further entities and elements without limit, so a few
// hundred bytes can keep it busy for hours. So is a processing instruction
// anywhere but at the very start: where text follows one, JUCE's parser loops
// for ever. Both are searched as plain text (hasOnlyPlainMarkup), since "<?"
// or "<!" never occur in our documents outside comments and CDATA.
// Every '&' must begin a well-formed entity or character reference: JUCE's
// parser reads an unknown entity whose name holds markup as markup, and reads
// past the end of it.
// Bytes from outside must be strictly valid UTF-8 (a byte-order mark is
// allowed): JUCE's strings trust the encoding and walk past the end of
// malformed sequences, and JUCE's own check lets overlong forms through.
// Files far larger than any of ours are refused too. Returns nullptr for
// anything that fails.
inline constexpr int maxXmlNestingDepth = 256;
inline constexpr juce::int64 maxXmlFileSize = 16 * 1024 * 1024;

bool hasBalancedTags (const juce::String& text, int maxDepth);
bool hasOnlyPlainMarkup (const juce::String& text);
bool hasOnlyWellFormedReferences (const juce::String& text);
std::unique_ptr<juce::XmlElement> parseXmlText (const juce::String& text);
std::unique_ptr<juce::XmlElement> parseXmlUtf8 (const void* data, size_t numBytes);
std::unique_ptr<juce::XmlElement> parseXmlFile (const juce::File& file);
// A host chunk framed as AudioProcessor::copyXmlToBinary frames it (a magic
// number, the text's length, the text).
std::unique_ptr<juce::XmlElement> parseXmlChunk (const void* data, int sizeInBytes);
