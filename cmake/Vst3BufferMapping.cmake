# JUCE 7.0.5's VST3 wrapper copies each input bus's channel map (a std::vector)
# for every block it processes: a heap allocation and a free on the host's
# audio thread, every block. The VST3 build compiles the wrapper against a copy
# of that header, made here from the installed JUCE, which takes the map by
# reference. A JUCE without the copy is used as it is. Included by the
# top-level CMakeLists.txt after the plug-in's targets.
set(QUORLANE_VST3_COMMON ${JUCE_MODULES_DIR}/juce_audio_processors/format_types/juce_VST3Common.h)
file(READ ${QUORLANE_VST3_COMMON} QUORLANE_VST3_COMMON_TEXT)
set(QUORLANE_VST3_MAP_COPY "const auto mapping = map[busIndex];")
string(FIND "${QUORLANE_VST3_COMMON_TEXT}" "${QUORLANE_VST3_MAP_COPY}" QUORLANE_VST3_MAP_COPY_AT)

if(QUORLANE_VST3_MAP_COPY_AT GREATER_EQUAL 0 AND TARGET Quorlane_VST3)
    string(REPLACE "${QUORLANE_VST3_MAP_COPY}" "const auto& mapping = map[busIndex];"
        QUORLANE_VST3_COMMON_TEXT "${QUORLANE_VST3_COMMON_TEXT}")
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
