// Reads values from a text in memory.
#include "reading/value_reader_impl.hpp"

namespace foundation::json::detail {

template class ValueReader<WholeText>;

} // namespace foundation::json::detail
