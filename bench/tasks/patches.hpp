/// @file
/// Patches, applied and made. Contenders that have them set `patches` and define `patch` and
/// `diff`.
#ifndef FOUNDATION_JSON_BENCH_TASKS_PATCHES_HPP
#define FOUNDATION_JSON_BENCH_TASKS_PATCHES_HPP

#include "documents.hpp"
#include "tasks/family.hpp"

#include <memory>

namespace bench {

template <class Contender>
void add_patches() {
    if constexpr (Contender::patches) {
        for (const Document& document : documents()) {
            using Value = typename Contender::Value;
            const Versions versions = versions_of(document.text);
            const auto before = std::make_shared<const Value>(Contender::parse(versions.before));
            const auto after = std::make_shared<const Value>(Contender::parse(versions.after));
            Value patched = Contender::copy(*before);
            Contender::patch(patched, Contender::diff(*before, *after));
            require<Contender>(Contender::equal(patched, *after), "diff");
            add<Contender>("diff", document.name, [before, after](benchmark::State& state) {
                for (auto _ : state) {
                    auto result = Contender::diff(*before, *after);
                    benchmark::DoNotOptimize(result);
                }
            });

            const auto operations =
                std::make_shared<const Value>(Contender::parse(versions.operations));
            const auto value = std::make_shared<Value>(Contender::copy(*before));
            Contender::patch(*value, *operations);
            require<Contender>(Contender::equal(*value, *before), "patch");
            add<Contender>("patch", document.name, [value, operations](benchmark::State& state) {
                for (auto _ : state) {
                    Contender::patch(*value, *operations);
                }
            });
        }
    }
}

} // namespace bench

#endif
