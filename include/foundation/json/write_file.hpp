/// @file
/// Writes JSON files, all or nothing. write.hpp includes it. For objects of your own types,
/// include write_types.hpp, too.
#ifndef FOUNDATION_JSON_WRITE_FILE_HPP
#define FOUNDATION_JSON_WRITE_FILE_HPP

#include <foundation/json/export.hpp>
#include <foundation/json/fwd.hpp>
#include <foundation/json/write_options.hpp>

#include <filesystem>
#include <type_traits>
#include <utility>

namespace foundation::json {

/// @cond
namespace detail {

FOUNDATION_JSON_EXPORT void write_text(const std::filesystem::path& path, const AnyObject& object,
                                       const WriteOptions& options);

} // namespace detail
/// @endcond

/// @name Files
/// @{

/// Serializes a value to a file, with a line end, all or nothing: the text goes to a new file in
/// the same folder, which replaces the old one once everything is on the disk.
///
/// After any error, the old file is unchanged, if there was one, and nothing else is left in its
/// folder. Only a program that ends abruptly may leave the new file there, a hidden one with the
/// name `.foundation_json.*`.
///
/// The new file has the permissions of the old one and, where the process may change them, its
/// owner and group; without an old one it has those that the process gives new files. If the
/// path is a symbolic link, the file it leads to is replaced or made. Other hard links to the old
/// file keep the old text. Programs that read the file meanwhile get the old text or the new.
///
/// @throws std::system_error "cannot write 'a.json': ...", with the reason that the system gives:
///         the folder does not exist or may not be written to, the disk is full, the old file is
///         write-protected or is not a regular file
/// @throws WriteError        the options do not allow something in the value
/// @throws std::bad_alloc    memory runs out
FOUNDATION_JSON_EXPORT void write_file(const std::filesystem::path& path, const Value& value,
                                       const WriteOptions& options = {});

/// The same for an object of your own type; see write_types.hpp, which has to be included as well.
/// @throws ConversionError  as from() does
template <class T, class = std::enable_if_t<detail::is_other_type<T>>>
void write_file(const std::filesystem::path& path, const T& object,
                const WriteOptions& options = {}) {
    detail::write_text(path, object_of(detail::OfOtherType(), object), options);
}
/// @}

} // namespace foundation::json

#endif
