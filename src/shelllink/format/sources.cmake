# The parser of shell links. It knows nothing of Windows but the allocator of item ID lists, so that it is also
# built natively, under the sanitizers.
set(SHELLLINK_FORMAT_SOURCES
    extra_data.cpp item_strings.cpp link_info.cpp link_sections.cpp link_splice.cpp section_view.cpp)
