/// @file
/// Reports how deep values may nest before an operation runs out of stack.
///
/// Usage: nesting_depth [STACK_MIB [DEPTH]]
///
/// Each operation runs in a process and on a stack of its own, of 8 MiB by default. Its values are
/// nested arrays, nested objects, and both in turn, with nothing else in them. Bisection finds the
/// greatest depth that it survives, up to a million levels, or up to a hundred thousand for pretty
/// text, whose length grows with the square of the depth. With DEPTH, only that depth is tried, and
/// the exit status is 1 if an operation does not survive it.
#include <foundation/json/content.hpp>
#include <foundation/json/json.hpp>
#include <foundation/json/parse.hpp>
#include <foundation/json/patch.hpp>
#include <foundation/json/pointer.hpp>
#include <foundation/json/write.hpp>

#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <pthread.h>

#include <algorithm>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <map>
#include <ostream>
#include <streambuf>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace {

using namespace foundation::json;

constexpr std::size_t a_million = 1000000;
constexpr std::size_t a_hundred_thousand = 100000;

/// The kinds of nested containers.
struct Shape {
    const char* name;
    bool outer_is_object; ///< the containers at odd distances from the innermost
    bool inner_is_object; ///< the innermost, and those at even distances from it
};

const Shape shapes[] = {
    {"arrays", false, false},
    {"objects", true, true},
    {"in turn", true, false},
};

Value empty_container(bool object) {
    return object ? Value(std::map<std::string, Value>()) : Value(std::vector<Value>());
}

/// A name that may come in another order in UTF-16 than in UTF-8.
const char name[] = "\xF0\x9F\x99\x82";

/// Nests empty containers, from the inside out and without recursion.
Value* nested(const Shape& shape, std::size_t depth) {
    auto* value = new Value(empty_container(shape.inner_is_object));
    for (std::size_t level = 1; level < depth; ++level) {
        const bool object = level % 2 == 0 ? shape.inner_is_object : shape.outer_is_object;
        Value outer = empty_container(object);
        if (object) {
            outer[name].swap(*value);
        } else {
            outer.push(Null());
            outer[0].swap(*value);
        }
        value->swap(outer);
    }
    return value;
}

/// Whether the text of such containers is the same after it is read and written again.
bool reads_text_of(const Value& value) {
    ParseOptions options;
    options.max_depth = a_million;
    const std::string text = serialize(value);
    return serialize(*new Value(parse(text, options))) == text;
}

/// Reads a text of such containers that is cut off, so that the parser destroys what it has read.
bool refuses_part_of(const Value& value) {
    ParseOptions options;
    options.max_depth = a_million;
    const std::string text = serialize(value);
    try {
        parse(std::string_view(text).substr(0, text.size() - 1), options);
        return false;
    } catch (const ParserException&) {
        return true;
    }
}

class Discard : public std::streambuf {
    int_type overflow(int_type byte) override { return traits_type::not_eof(byte); }
    std::streamsize xsputn(const char*, std::streamsize count) override { return count; }
};

enum class Path { fast, reference };

/// Writes a value by the fast path, or onto a stream that the fast path does not apply to.
void write(const Value& value, bool pretty, Path path) {
    Discard discard;
    std::ostream stream(&discard);
    if (path == Path::reference) {
        stream << std::showpos;
    }
    Serializer serializer;
    serializer.pretty_print(pretty);
    serializer.write(stream, value);
}

/// Writes a value by write() onto a stream.
void write_text(const Value& value, const WriteOptions& options) {
    Discard discard;
    std::ostream stream(&discard);
    foundation::json::write(stream, value, options);
}

/// The value that lies innermost, and the pointer to it.
Value& innermost(Value& value, std::string& pointer) {
    Value* at = &value;
    for (;;) {
        if (auto* const elements = get_if<Array>(at); elements != nullptr && !elements->empty()) {
            at = &elements->front();
            pointer += "/0";
        } else if (auto* const members = get_if<Object>(at);
                   members != nullptr && !members->empty()) {
            at = &members->begin()->second;
            pointer += std::string("/") + name;
        } else {
            return *at;
        }
    }
}

/// Finds an error in the innermost container.
bool locates_an_error_in(Value& value) {
    std::string pointer;
    innermost(value, pointer) = "\xFF";
    try {
        static_cast<void>(foundation::json::write(value));
        return false;
    } catch (const WriteError&) {
        return true;
    }
}

/// Makes a patch for a change of the innermost value, and applies it.
bool patches(Value& a, Value& b) {
    std::string pointer;
    innermost(b, pointer) = "changed";
    return equivalent(patch(a, diff(a, b)), b);
}

/// The same with a merge patch. Of arrays, it is the whole value.
bool merges(Value& a, Value& b) {
    std::string pointer;
    innermost(b, pointer) = "changed";
    return equivalent(merge_patch(a, merge_diff(a, b)), b);
}

/// Changes what is innermost, and looks at and copies all of it before that takes effect.
bool tests_while_patching(Value& a, Value& b) {
    std::string pointer;
    innermost(b, pointer) = Value(Array{1});
    Value outer(Array{});
    outer.push(Value());
    outer[0].swap(a);
    Array operations;
    operations.push_back(operation::replace("/0" + pointer, Array()));
    operations.push_back(operation::add("/0" + pointer + "/0", 1));
    operations.push_back(operation::add("/-", Null()));
    operations.push_back(operation::copy("/0", "/-"));
    operations.emplace_back(Object{{"op", "test"}, {"path", "/2"}});
    operations.back()["value"].swap(b);
    patch(outer, Value(operations));
    return outer.length() == 3;
}

/// Makes as many levels at once, and takes them away again.
bool sets_and_erases(Value& a) {
    std::string pointer;
    innermost(a, pointer);
    Value value;
    set(value, pointer, "innermost");
    copy(value, pointer, pointer);
    return holds<std::string>(erase(value, pointer));
}

/// An operation on two equal values. Only the operation itself may destroy them.
using Operation = void (*)(Value* a, Value* b);

struct NamedOperation {
    const char* name;
    Operation run;
    std::size_t most = a_million; ///< the greatest depth to try
};

volatile bool result;

void require(bool right) {
    if (!right) {
        std::abort();
    }
}

const NamedOperation operations[] = {
    {"serialize", [](Value* a, Value*) { result = serialize(*a).empty(); }},
    {"serialize, parse, serialize", [](Value* a, Value*) { result = reads_text_of(*a); }},
    {"parse a text cut off", [](Value* a, Value*) { result = refuses_part_of(*a); }},
    {"write compact", [](Value* a, Value*) { write(*a, false, Path::fast); }},
    {"write compact, reference", [](Value* a, Value*) { write(*a, false, Path::reference); }},
    {"write pretty", [](Value* a, Value*) { write(*a, true, Path::fast); }, a_hundred_thousand},
    {"write pretty, reference", [](Value* a, Value*) { write(*a, true, Path::reference); },
     a_hundred_thousand},
    {"write", [](Value* a, Value*) { result = foundation::json::write(*a).empty(); }},
    {"write canonical", [](Value* a, Value*) { write_text(*a, WriteOptions::canonical()); }},
    {"write indented", [](Value* a, Value*) { write_text(*a, WriteOptions::indented(2)); },
     a_hundred_thousand},
    {"write an error", [](Value* a, Value*) { result = locates_an_error_in(*a); }},
    {"copy", [](Value* a, Value*) { new Value(*a); }},
    {"copy assignment, same shape", [](Value* a, Value* b) { *a = *b; }},
    {"copy assignment, other kind", [](Value* a, Value*) { *new Value() = *a; }},
    {"==", [](Value* a, Value* b) { result = *a == *b; }},
    {"<", [](Value* a, Value* b) { result = *a < *b; }},
    {"move", [](Value* a, Value*) { new Value(std::move(*a)); }},
    {"move assignment, same shape", [](Value* a, Value* b) { *a = std::move(*b); }},
    {"swap", [](Value* a, Value* b) { a->swap(*b); }},
    {"equivalent", [](Value* a, Value* b) { result = equivalent(*a, *b); }},
    {"diff and patch", [](Value* a, Value* b) { require(patches(*a, *b)); }, a_hundred_thousand},
    {"merge_diff and merge_patch", [](Value* a, Value* b) { require(merges(*a, *b)); },
     a_hundred_thousand},
    {"test and copy within a patch",
     [](Value* a, Value* b) { require(tests_while_patching(*a, *b)); }, a_hundred_thousand},
    {"set, copy and erase by pointer", [](Value* a, Value*) { require(sets_and_erases(*a)); },
     a_hundred_thousand},
    {"destruction", [](Value* a, Value*) { delete a; }},
};

struct Attempt {
    Operation operation;
    Value* a;
    Value* b;
};

void* run(void* argument) {
    const auto* attempt = static_cast<const Attempt*>(argument);
    attempt->operation(attempt->a, attempt->b);
    return nullptr;
}

[[noreturn]] void fail(const char* message) {
    std::fprintf(stderr, "nesting_depth: %s\n", message);
    std::exit(2);
}

bool survives(Operation operation, const Shape& shape, std::size_t depth, std::size_t stack) {
    const pid_t child = fork();
    if (child < 0) {
        fail("cannot start a process");
    }
    if (child == 0) {
        Attempt attempt{operation, nested(shape, depth), nested(shape, depth)};
        pthread_attr_t attributes;
        pthread_t thread;
        if (pthread_attr_init(&attributes) != 0 ||
            pthread_attr_setstacksize(&attributes, stack) != 0 ||
            pthread_create(&thread, &attributes, run, &attempt) != 0) {
            _exit(2);
        }
        pthread_join(thread, nullptr);
        _exit(0);
    }
    int status = 0;
    waitpid(child, &status, 0);
    if (WIFEXITED(status) && WEXITSTATUS(status) == 2) {
        fail("cannot make a thread with such a stack");
    }
    if (WIFSIGNALED(status) && WTERMSIG(status) == SIGABRT) {
        fail("an operation gives a wrong result");
    }
    return WIFEXITED(status);
}

/// The greatest depth that an operation survives, within a hundredth.
std::size_t greatest_depth(const NamedOperation& operation, const Shape& shape, std::size_t stack) {
    std::size_t good = 0;
    std::size_t bad = operation.most + 1;
    std::size_t depth = operation.most;
    while (bad - good > good / 100 + 1) {
        (survives(operation.run, shape, depth, stack) ? good : bad) = depth;
        depth = good + (bad - good) / 2;
    }
    return good;
}

void print_heading() {
    std::printf("%-32s", "levels");
    for (const Shape& shape : shapes) {
        std::printf("  %10s", shape.name);
    }
    std::printf("\n");
}

void report(std::size_t stack) {
    print_heading();
    for (const NamedOperation& operation : operations) {
        std::printf("%-32s", operation.name);
        for (const Shape& shape : shapes) {
            const std::size_t depth = greatest_depth(operation, shape, stack);
            std::printf("  %2s%8zu", depth == operation.most ? ">=" : "", depth);
            std::fflush(stdout);
        }
        std::printf("\n");
    }
}

bool all_survive(std::size_t stack, std::size_t depth) {
    bool all = true;
    for (const NamedOperation& operation : operations) {
        for (const Shape& shape : shapes) {
            if (!survives(operation.run, shape, depth, stack)) {
                std::printf("%s does not survive %zu levels of %s\n", operation.name, depth,
                            shape.name);
                all = false;
            }
        }
    }
    return all;
}

} // namespace

int main(int argc, char** argv) {
    const std::size_t mib = argc > 1 ? std::strtoul(argv[1], nullptr, 10) : 8;
    const std::size_t stack = mib << 20;

    // Processes are expected to run out of stack here, and need not leave core files.
    const rlimit no_core = {0, 0};
    setrlimit(RLIMIT_CORE, &no_core);
    if (argc > 2) {
        const std::size_t depth = std::strtoul(argv[2], nullptr, 10);
        if (!all_survive(stack, depth)) {
            return 1;
        }
        std::printf("Every operation survives %zu levels on a stack of %zu MiB.\n", depth, mib);
        return 0;
    }
    report(stack);
}
