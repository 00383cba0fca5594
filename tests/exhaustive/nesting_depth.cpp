/// @file
/// Reports how deep values may nest before an operation runs out of stack.
///
/// Usage: nesting_depth [STACK_MIB]
///
/// Each operation runs in a process and on a stack of its own, of 8 MiB unless told otherwise, on
/// arrays and on objects that hold nothing but one another. The greatest depth that it survives is
/// found by bisection, up to ten million levels.
#include <foundation/json/json.hpp>

#include <sys/wait.h>
#include <unistd.h>

#include <pthread.h>

#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <memory>
#include <ostream>
#include <streambuf>
#include <string>

namespace {

using namespace foundation::json;

/// Wraps empty containers in one another, from the inside out and without recursion.
Value* nested(bool objects, std::size_t depth) {
    const Value empty =
        objects ? Value(std::map<std::string, Value>()) : Value(std::vector<Value>());
    auto* value = new Value(empty);
    for (std::size_t level = 1; level < depth; ++level) {
        Value outer(empty);
        if (objects) {
            outer["k"].swap(*value);
        } else {
            outer.push(Null());
            outer[0].swap(*value);
        }
        value->swap(outer);
    }
    return value;
}

class Discard : public std::streambuf {
    int_type overflow(int_type byte) override { return traits_type::not_eof(byte); }
    std::streamsize xsputn(const char*, std::streamsize count) override { return count; }
};

/// What is done to two equal values. They are never destroyed unless that is what is done.
using Operation = void (*)(Value* a, Value* b);

struct NamedOperation {
    const char* name;
    Operation run;
};

volatile bool result;

const NamedOperation operations[] = {
    {"serialize", [](Value* a, Value*) { result = serialize(*a).empty(); }},
    {"write compact",
     [](Value* a, Value*) {
         Discard discard;
         std::ostream stream(&discard);
         Serializer().write(stream, *a);
     }},
    {"write compact, plain",
     [](Value* a, Value*) {
         Discard discard;
         std::ostream stream(&discard);
         stream << std::showpos;
         Serializer().write(stream, *a);
     }},
    {"copy", [](Value* a, Value*) { new Value(*a); }},
    {"copy assignment, same shape", [](Value* a, Value* b) { *a = *b; }},
    {"==", [](Value* a, Value* b) { result = *a == *b; }},
    {"<", [](Value* a, Value* b) { result = *a < *b; }},
    {"move", [](Value* a, Value*) { new Value(std::move(*a)); }},
    {"swap", [](Value* a, Value* b) { a->swap(*b); }},
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

bool survives(Operation operation, bool objects, std::size_t depth, std::size_t stack) {
    const pid_t child = fork();
    if (child == 0) {
        Attempt attempt{operation, nested(objects, depth), nested(objects, depth)};
        pthread_attr_t attributes;
        pthread_attr_init(&attributes);
        pthread_attr_setstacksize(&attributes, stack);
        pthread_t thread;
        if (pthread_create(&thread, &attributes, run, &attempt) != 0) {
            _exit(2);
        }
        pthread_join(thread, nullptr);
        _exit(0);
    }
    int status = 0;
    waitpid(child, &status, 0);
    return WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

std::size_t greatest_depth(Operation operation, bool objects, std::size_t stack) {
    constexpr std::size_t most = 1000000;
    std::size_t good = 0;
    std::size_t bad = most + 1;
    for (std::size_t depth = most; bad - good > good / 100 + 1; depth = good + (bad - good) / 2) {
        (survives(operation, objects, depth, stack) ? good : bad) = depth;
    }
    return good;
}

} // namespace

int main(int argc, char** argv) {
    const std::size_t stack = (argc > 1 ? std::strtoul(argv[1], nullptr, 10) : 8) << 20;
    for (const NamedOperation& operation : operations) {
        std::printf("%-28s", operation.name);
        for (const bool objects : {false, true}) {
            const std::size_t depth = greatest_depth(operation.run, objects, stack);
            std::printf(" %9zu (%4zu bytes)", depth, stack / (depth + 1));
            std::fflush(stdout);
        }
        std::printf("\n");
    }
}
