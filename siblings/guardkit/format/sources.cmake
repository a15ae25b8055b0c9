# The journal's format and the planning of an undo. They know nothing of Windows, so that they are also built
# natively, under the sanitizers.
set(GUARDKIT_FORMAT_SOURCES journal_format.cpp past_state.cpp record_codec.cpp state_content.cpp step_codec.cpp step_history.cpp undo_plan.cpp)
