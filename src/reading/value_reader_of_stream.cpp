// Reads values from a stream.
#include "reading/value_reader_impl.hpp"

namespace foundation::json::detail {

template class ValueReader<Window>;

} // namespace foundation::json::detail
