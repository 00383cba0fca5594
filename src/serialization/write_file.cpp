// Values into files, all or nothing.
#include <foundation/json/write.hpp>

#include "serialization/new_file.hpp"
#include "serialization/object_text.hpp"
#include "serialization/text_output.hpp"
#include "serialization/write_value.hpp"

#include <cstddef>
#include <memory>

namespace foundation::json {

namespace {

/// Writes text to a file, in pieces that are large for the system.
class FileTarget : public detail::TextTarget {
public:
    explicit FileTarget(detail::NewFile& file) : file_(file), buffer_(new char[size]) {}

    detail::Room start() noexcept { return {buffer_.get(), buffer_.get() + size}; }

    detail::Room next(const char* at) override {
        file_.write(buffer_.get(), static_cast<std::size_t>(at - buffer_.get()));
        return start();
    }

    detail::Room pass(detail::Room rest, const char* text, std::size_t text_size) override {
        next(rest.begin);
        file_.write(text, text_size);
        return start();
    }

private:
    static constexpr std::size_t size = 65536;

    detail::NewFile& file_;
    std::unique_ptr<char[]> buffer_;
};

template <class Content>
void write_content_to(const std::filesystem::path& path, const Content& content,
                      const WriteOptions& options) {
    detail::NewFile file(path);
    FileTarget target(file);
    const detail::Room room = target.start();
    detail::TextOutput output(target, room, options);
    target.next(output.raw(detail::write_root(output, room.begin, content), "\n"));
    file.take_place();
}

} // namespace

void write_file(const std::filesystem::path& path, const Value& value,
                const WriteOptions& options) {
    write_content_to(path, value, options);
}

void detail::write_text(const std::filesystem::path& path, const AnyObject& object,
                        const WriteOptions& options) {
    write_content_to(path, object, options);
}

} // namespace foundation::json
