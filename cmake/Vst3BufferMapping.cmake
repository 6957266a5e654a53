# JUCE 7.0.5's VST3 wrapper allocates on the host's audio thread in two places
# of one header: it copies each input bus's channel map (a std::vector) for
# every block, and it turns each SysEx event into a MidiMessage, which
# allocates beyond eight bytes. The VST3 build compiles the wrapper against a
# copy of that header, made here from the installed JUCE, which takes the map
# by reference and frames SysEx of up to a kilobyte on the stack (longer
# messages take JUCE's path). A JUCE without these lines is used as it is.
# Included by the top-level CMakeLists.txt after the plug-in's targets.
set(QUORLANE_VST3_COMMON ${JUCE_MODULES_DIR}/juce_audio_processors/format_types/juce_VST3Common.h)
file(READ ${QUORLANE_VST3_COMMON} QUORLANE_VST3_COMMON_TEXT)
set(QUORLANE_VST3_ORIGINAL_TEXT "${QUORLANE_VST3_COMMON_TEXT}")

string(REPLACE "const auto mapping = map[busIndex];" "const auto& mapping = map[busIndex];"
    QUORLANE_VST3_COMMON_TEXT "${QUORLANE_VST3_COMMON_TEXT}")
string(REPLACE "if (const auto message = toMidiMessage (e))"
    "if (e.type == Steinberg::Vst::Event::kDataEvent && e.data.size <= 1022)
            {
                uint8 framed[1024];
                framed[0] = 0xf0;
                memcpy (framed + 1, e.data.bytes, e.data.size);
                framed[e.data.size + 1] = 0xf7;
                result.addEvent (framed, (int) e.data.size + 2, e.sampleOffset);
            }
            else if (const auto message = toMidiMessage (e))"
    QUORLANE_VST3_COMMON_TEXT "${QUORLANE_VST3_COMMON_TEXT}")

if(NOT QUORLANE_VST3_COMMON_TEXT STREQUAL QUORLANE_VST3_ORIGINAL_TEXT AND TARGET Quorlane_VST3)
    set(QUORLANE_VST3_INCLUDE ${CMAKE_BINARY_DIR}/vst3-wrapper-include)
    set(QUORLANE_VST3_FIXED ${QUORLANE_VST3_INCLUDE}/juce_audio_processors/format_types/juce_VST3Common.h)
    set(QUORLANE_VST3_FIXED_TEXT "")
    if(EXISTS ${QUORLANE_VST3_FIXED})
        file(READ ${QUORLANE_VST3_FIXED} QUORLANE_VST3_FIXED_TEXT)
    endif()
    # Written only when it changes, so that a new configure rebuilds nothing.
    if(NOT QUORLANE_VST3_FIXED_TEXT STREQUAL QUORLANE_VST3_COMMON_TEXT)
        file(WRITE ${QUORLANE_VST3_FIXED} "${QUORLANE_VST3_COMMON_TEXT}")
    endif()
    set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${QUORLANE_VST3_COMMON})
    target_include_directories(Quorlane_VST3 BEFORE PRIVATE ${QUORLANE_VST3_INCLUDE})
endif()
