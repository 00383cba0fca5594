/// @file
/// Operations on a few values. The bytes choose the operations and their operands. Each operation
/// is performed on the library's values and on models of them; afterwards the two must agree.
#include "expect.hpp"
#include "input.hpp"
#include "model.hpp"

#include <foundation/json/content.hpp>
#include <foundation/json/json.hpp>

#include <boost/numeric/conversion/converter_policies.hpp>

#include <array>
#include <cmath>
#include <cstdint>
#include <iterator>
#include <limits>
#include <map>
#include <stdexcept>
#include <string>
#include <typeinfo>
#include <utility>
#include <vector>

namespace foundation::json::fuzz {
namespace {

// Limits, so that no input takes long.
constexpr std::size_t most_operations = 60;
constexpr std::size_t most_nodes = 300;
constexpr std::size_t most_levels = 300;

const Value no_members{Object()};

// ---- Values and models -------------------------------------------------------------------------

/// A value together with its model.
struct Twin {
    Value value;
    Model model;
};

/// Compares the visited content with a model, exactly: the sign of a zero counts, too.
class Agrees {
public:
    explicit Agrees(const Model& model) : model_(model) {}

    bool operator()(const Undefined&) const { return model_.is(Kind::undefined); }
    bool operator()(const Null&) const { return model_.is(Kind::null); }
    bool operator()(bool flag) const { return model_.is(Kind::boolean) && flag == model_.flag; }
    bool operator()(double number) const {
        return model_.is(Kind::number) && same(number, model_.number);
    }
    bool operator()(float number) const {
        return model_.is(Kind::real) && same(number, model_.real);
    }
    bool operator()(long long number) const {
        return model_.is(Kind::int64) && number == model_.int64;
    }
    bool operator()(unsigned long long number) const {
        return model_.is(Kind::uint64) && number == model_.uint64;
    }
    bool operator()(const std::string& text) const {
        return model_.is(Kind::string) && text == model_.text;
    }
    bool operator()(const Array& elements) const {
        return model_.is(Kind::array) &&
               std::equal(elements.begin(), elements.end(), model_.elements.begin(),
                          model_.elements.end(), [](const Value& value, const Model& model) {
                              return visit(Agrees(model), value);
                          });
    }
    bool operator()(const Object& members) const {
        return model_.is(Kind::object) &&
               std::equal(members.begin(), members.end(), model_.members.begin(),
                          model_.members.end(), [](const auto& value, const auto& model) {
                              return value.first == model.first &&
                                     visit(Agrees(model.second), value.second);
                          });
    }

private:
    template <class Number>
    static bool same(Number left, Number right) {
        return std::isnan(left) ? std::isnan(right)
                                : left == right && std::signbit(left) == std::signbit(right);
    }

    const Model& model_;
};

void expect_agreement(const Value& value, const Model& model, std::string_view what) {
    if (!visit(Agrees(model), value)) {
        expect_equal(serialize(value), compact_text(model), what);
        expect(false, what);
    }
}

/// The result of an action, or the message of what it throws.
template <class Action>
std::string outcome(const Action& action) {
    try {
        return action();
    } catch (const boost::numeric::negative_overflow&) {
        return "overflows below";
    } catch (const boost::numeric::positive_overflow&) {
        return "overflows above";
    } catch (const std::out_of_range&) {
        return "is out of range";
    } catch (const std::runtime_error& error) {
        expect(typeid(error) == typeid(std::runtime_error), "the error is a plain runtime_error");
        return std::string("throws ") + error.what();
    }
}

// ---- The operations ----------------------------------------------------------------------------

class Session {
public:
    explicit Session(Input input) : input_(input) {}

    void run();

private:
    /// A value within one of the roots: the path to it, the value, and its model.
    struct Place {
        std::size_t root;
        std::vector<std::size_t> path;
        Value* value;
        Model* model;

        void enter(std::size_t child);
        bool lies_strictly_within(const Place& other) const;
    };

    Place place();
    Place place_below(Place place);
    bool may_grow(const Place& target, const Model& by) const;
    std::string key() { return input_.one_of(keys); }
    Twin twin();
    Twin scalar_twin();
    template <class Content>
    static Twin twin_of(Kind kind, Content Model::*member, const Content& content);

    void assign_new();
    void assign_copy();
    void assign_moved();
    void assign_copy_made_before();
    void assign_to_itself();
    void swap();
    void lift();
    void wrap();
    void construct_copy();
    void construct_moved();
    void push();
    void push_own();
    void index_by_name();
    void index_by_position();
    void index_by_value();
    void measure();
    void convert();
    void change_content(const Place& target);
    void compare();
    void fall_back();
    void has_property();
    void build_array();
    void build_object();
    void write();

    void put(const Place& target, Twin twin);
    template <class Index>
    void check_position(const Place& target, Index index);
    std::string look_up(const Place& target, const Value& key);

    using Operation = void (Session::*)();
    static const Operation operations[23];
    static const std::string keys[8];

    Input input_;
    std::array<Twin, 3> roots_;
};

const Session::Operation Session::operations[] = {
    &Session::assign_new,
    &Session::assign_copy,
    &Session::assign_moved,
    &Session::swap,
    &Session::push,
    &Session::index_by_name,
    &Session::assign_to_itself,
    &Session::lift,
    &Session::wrap,
    &Session::construct_copy,
    &Session::construct_moved,
    &Session::push_own,
    &Session::index_by_position,
    &Session::index_by_value,
    &Session::measure,
    &Session::convert,
    &Session::compare,
    &Session::fall_back,
    &Session::has_property,
    &Session::build_array,
    &Session::build_object,
    &Session::write,
    &Session::assign_copy_made_before,
};

const std::string Session::keys[] = {"a",    "b",
                                     "",     "ab",
                                     "B",    std::string("a\0b", 3),
                                     "\xFF", "a name too long for a string's own storage"};

void Session::run() {
    for (std::size_t count = 0; count < most_operations && !input_.empty(); ++count) {
        (this->*input_.one_of(operations))();
        for (const Twin& root : roots_) {
            expect_agreement(root.value, root.model, "a value after an operation");
        }
    }
}

// ---- Choosing values ---------------------------------------------------------------------------

void Session::Place::enter(std::size_t child) {
    if (model->is(Kind::array)) {
        value = &(*value)[child];
        model = &model->elements[child];
    } else {
        auto& [name, member] =
            *std::next(model->members.begin(), static_cast<std::ptrdiff_t>(child));
        value = &(*value)[name];
        model = &member;
    }
    path.push_back(child);
}

bool Session::Place::lies_strictly_within(const Place& other) const {
    return root == other.root && path.size() > other.path.size() &&
           std::equal(other.path.begin(), other.path.end(), path.begin());
}

Session::Place Session::place() {
    const std::size_t root = input_.below(roots_.size());
    return place_below({root, {}, &roots_[root].value, &roots_[root].model});
}

/// The place itself or a place within it.
Session::Place Session::place_below(Place place) {
    constexpr std::size_t to_the_bottom = 5;
    const std::size_t steps = input_.below(to_the_bottom + 1);
    for (std::size_t step = 0; step < steps || steps == to_the_bottom; ++step) {
        const std::size_t children = place.model->elements.size() + place.model->members.size();
        if (children == 0) {
            break;
        }
        place.enter(children == 1 ? 0 : input_.byte() % children);
    }
    return place;
}

bool Session::may_grow(const Place& target, const Model& by) const {
    const Model& root = roots_[target.root].model;
    return nodes(root) + nodes(by) <= most_nodes && depth(root) + depth(by) <= most_levels;
}

template <class Content>
Twin Session::twin_of(Kind kind, Content Model::*member, const Content& content) {
    Twin result{Value(content), Model()};
    result.model.kind = kind;
    result.model.*member = content;
    return result;
}

Twin Session::scalar_twin() {
    static const double numbers[] = {0.0,
                                     -0.0,
                                     1.0,
                                     -0.5,
                                     1.9,
                                     2.5,
                                     1e6,
                                     2147483647.9,
                                     2147483648.0,
                                     -2147483648.9,
                                     -2147483649.0,
                                     std::numeric_limits<double>::quiet_NaN(),
                                     std::numeric_limits<double>::infinity(),
                                     -std::numeric_limits<double>::infinity()};
    static const std::string texts[] = {"",
                                        "0",
                                        "-12xyz",
                                        "  42",
                                        "+7",
                                        "- 1",
                                        "1e3",
                                        "2147483648",
                                        "-99999999999",
                                        "\n\v8",
                                        "a/\"b",
                                        std::string("\0\x1f\n", 3),
                                        "\xC3\xA9\xFF"};
    switch (input_.below(13)) {
    case 0:
        return {Value(), Model()};
    case 1:
        return {Value(Undefined()), Model()};
    case 2: {
        Twin result{Value(Null()), Model()};
        result.model.kind = Kind::null;
        return result;
    }
    case 3:
        return twin_of(Kind::boolean, &Model::flag, input_.flag());
    case 4: {
        const int number = input_.bits<std::int16_t>();
        Twin result{Value(number), Model()};
        result.model.kind = Kind::number;
        result.model.number = number;
        return result;
    }
    case 5:
        return twin_of(Kind::number, &Model::number, input_.one_of(numbers));
    case 6:
        return twin_of(Kind::number, &Model::number, input_.bits<double>());
    case 7:
        return twin_of(Kind::real, &Model::real, static_cast<float>(input_.below(4)) / 2);
    case 8:
        return twin_of(Kind::real, &Model::real, input_.bits<float>());
    case 9:
        return twin_of(Kind::int64, &Model::int64, input_.bits<long long>());
    case 10:
        return twin_of(Kind::uint64, &Model::uint64, input_.bits<unsigned long long>());
    case 11:
        return twin_of(Kind::string, &Model::text, input_.one_of(texts));
    default: {
        const std::string text = input_.text(input_.below(40)).c_str();
        Twin result{Value(text.c_str()), Model()};
        result.model.kind = Kind::string;
        result.model.text = text;
        return result;
    }
    }
}

/// A new scalar, array or object, made by one of the constructors.
Twin Session::twin() {
    const std::size_t choice = input_.below(8);
    if (choice > 1) {
        return scalar_twin();
    }
    std::vector<Value> elements;
    std::map<std::string, Value> members;
    Model model;
    model.kind = choice == 0 ? Kind::array : Kind::object;
    for (std::size_t count = input_.below(5); count > 0; --count) {
        const Twin child = scalar_twin();
        if (choice == 0) {
            elements.push_back(child.value);
            model.elements.push_back(child.model);
        } else {
            const std::string name = key();
            members[name] = child.value;
            model.members[name] = child.model;
        }
    }
    return {choice == 0 ? Value(elements) : Value(members), model};
}

void Session::put(const Place& target, Twin twin) {
    target.value->swap(twin.value);
    *target.model = twin.model;
}

// ---- Construction, assignment and swap ---------------------------------------------------------

void Session::assign_new() {
    Twin source = twin();
    const Place target = place();
    if (!may_grow(target, source.model)) {
        return;
    }
    if (input_.flag()) {
        expect(&(*target.value = source.value) == target.value, "assignment returns its target");
        *target.model = source.model;
    } else {
        *target.value = std::move(source.value);
        move_assign(*target.model, source.model);
    }
    expect_agreement(source.value, source.model, "what was assigned");
}

void Session::assign_copy() {
    const Place target = place();
    const Place source = place();
    if (target.lies_strictly_within(source) || source.lies_strictly_within(target) ||
        !may_grow(target, *source.model)) {
        return;
    }
    expect(&(*target.value = *source.value) == target.value, "assignment returns its target");
    const Model copy = *source.model;
    *target.model = copy;
}

void Session::assign_moved() {
    const Place target = place();
    const Place source = place();
    if (target.lies_strictly_within(source) || source.lies_strictly_within(target) ||
        !may_grow(target, *source.model) || !may_grow(source, *target.model)) {
        return;
    }
    expect(&(*target.value = std::move(*source.value)) == target.value,
           "assignment returns its target");
    move_assign(*target.model, *source.model);
}

/// Safe even if one of the two lies within the other.
void Session::assign_copy_made_before() {
    const Place target = place();
    const Place source = place();
    if (!may_grow(target, *source.model)) {
        return;
    }
    *target.value = Value(*source.value);
    const Model copy = *source.model;
    *target.model = copy;
}

void Session::assign_to_itself() {
    const Place target = place();
    Value& same = *target.value;
    switch (input_.below(3)) {
    case 0:
        *target.value = same;
        break;
    case 1:
        *target.value = std::move(same);
        break;
    default:
        target.value->swap(same);
    }
}

void Session::swap() {
    const Place left = place();
    const Place right = place();
    if (left.lies_strictly_within(right) || right.lies_strictly_within(left) ||
        !may_grow(left, *right.model) || !may_grow(right, *left.model)) {
        return;
    }
    expect(&left.value->swap(*right.value) == left.value, "swap returns its left operand");
    if (left.model != right.model) {
        std::swap(*left.model, *right.model);
    }
}

/// Replaces a value by one within it, without a copy.
void Session::lift() {
    const Place target = place();
    const Place child = place_below(target);
    Value lifted;
    lifted.swap(*child.value);
    target.value->swap(lifted);
    const Model model = *child.model;
    *target.model = model;
}

/// Puts a value into nested arrays and objects.
void Session::wrap() {
    const Place target = place();
    const std::size_t levels = 1 + input_.below(128);
    const std::uint8_t pattern = input_.byte();
    const std::string name = key();
    const Model& root = roots_[target.root].model;
    if (nodes(root) + levels > most_nodes || depth(root) + levels > most_levels) {
        return;
    }
    for (std::size_t level = 0; level < levels; ++level) {
        const bool as_element = ((pattern >> (level % 8)) & 1) == 0;
        Value outer = as_element ? Value(std::vector<Value>(1))
                                 : Value(std::map<std::string, Value>{{name, Value()}});
        (as_element ? outer[0] : outer[name]).swap(*target.value);
        target.value->swap(outer);
        Model outer_model;
        outer_model.kind = as_element ? Kind::array : Kind::object;
        (as_element ? outer_model.elements.emplace_back() : outer_model.members[name]) =
            std::move(*target.model);
        *target.model = std::move(outer_model);
    }
}

void Session::construct_copy() {
    const Place source = place();
    Twin copy{Value(*source.value), *source.model};
    expect_agreement(copy.value, copy.model, "a copy");
    // The two are independent.
    Twin changed = scalar_twin();
    if (copy.model.is(Kind::array)) {
        copy.value.push(changed.value);
    } else if (copy.model.is(Kind::object)) {
        copy.value["a"] = changed.value;
    } else {
        copy.value = changed.value;
    }
    expect_agreement(*source.value, *source.model, "what was copied");
}

void Session::construct_moved() {
    const Place source = place();
    Value target(std::move(*source.value));
    const Model model = take(*source.model);
    expect_agreement(target, model, "what a move constructed");
    expect_agreement(*source.value, *source.model, "what was moved from");
    const std::size_t root = input_.below(roots_.size());
    roots_[root].value = std::move(target);
    roots_[root].model = model;
}

// ---- Access ------------------------------------------------------------------------------------

void Session::push() {
    const Place target = place();
    const Place source = place();
    if (!may_grow(target, *source.model)) {
        return;
    }
    const std::string pushed = outcome([&] {
        target.value->push(*source.value);
        return "";
    });
    if (target.model->is(Kind::array)) {
        expect_equal(pushed, "", "push onto an array");
        const Model copy = *source.model;
        target.model->elements.push_back(copy);
    } else {
        expect_equal(pushed,
                     "throws json::Value::push not supported for values of type: " +
                         name_of(target.model->kind),
                     "push");
    }
}

/// Pushes an array, or a value within it, onto the array itself.
void Session::push_own() {
    Place target = place();
    while (!target.model->is(Kind::array) && target.model->has_child()) {
        target.enter(0);
    }
    const Place source = place_below(target);
    if (target.model->is(Kind::array) && may_grow(target, *source.model)) {
        target.value->push(*source.value);
        const Model copy = *source.model;
        target.model->elements.push_back(copy);
    }
}

void Session::index_by_name() {
    const Place target = place();
    const std::string name = key();
    const Value& constant = *target.value;
    const bool as_pointer = name.find('\0') == std::string::npos && input_.flag();
    const bool writes = input_.flag();
    const auto found = target.model->members.find(name);
    const bool missing = found == target.model->members.end();
    const std::string expected =
        target.model->is(Kind::object) ? "" : invalid_conversion(*target.model, "JSON object");

    expect_equal(outcome([&] {
                     const Value& result = as_pointer ? constant[name.c_str()] : constant[name];
                     expect_agreement(result, missing ? Model() : found->second, "a member");
                     expect(!missing || &result == &no_members["missing"],
                            "all missing members are the same value");
                     return "";
                 }),
                 expected, "const indexing by name");
    if (!writes || !may_grow(target, Model())) {
        return;
    }
    expect_equal(outcome([&] {
                     Value& result =
                         as_pointer ? (*target.value)[name.c_str()] : (*target.value)[name];
                     expect_agreement(result, missing ? Model() : found->second, "a member");
                     expect(&result == &constant[name], "both overloads find the same member");
                     return "";
                 }),
                 expected, "indexing by name");
    if (expected.empty()) {
        target.model->members.emplace(name, Model());
    }
}

template <class Index>
void Session::check_position(const Place& target, Index index) {
    const Value& constant = *target.value;
    const std::string expected =
        target.model->is(Kind::array) ? "" : invalid_conversion(*target.model, "JSON array");
    const auto position = static_cast<std::size_t>(index);
    expect_equal(outcome([&] {
                     Value& result = (*target.value)[index];
                     expect_agreement(result, target.model->elements[position], "an element");
                     return "";
                 }),
                 expected, "indexing by position");
    expect_equal(outcome([&] {
                     const Value& result = constant[index];
                     expect(&result == &(*target.value)[index],
                            "both overloads find the same element");
                     return "";
                 }),
                 expected, "const indexing by position");
}

void Session::index_by_position() {
    const Place target = place();
    std::size_t index = input_.byte();
    if (target.model->is(Kind::array)) {
        if (target.model->elements.empty()) {
            return;
        }
        index %= target.model->elements.size();
    }
    check_position(target, index);
    check_position(target, static_cast<int>(index));
}

/// Looks up a key by both overloads. Returns the message of the exception, or nothing.
std::string Session::look_up(const Place& target, const Value& key) {
    const Value& constant = *target.value;
    const std::string read = outcome([&] {
        static_cast<void>(constant[key]);
        return "";
    });
    expect_equal(outcome([&] {
                     const Value& result = (*target.value)[key];
                     expect(&result == &constant[key], "both overloads find the same value");
                     return "";
                 }),
                 read, "const and non-const indexing by a value");
    return read;
}

void Session::index_by_value() {
    const Place target = place();
    const Twin key = input_.flag() ? scalar_twin() : [this] {
        const Place chosen = place();
        return Twin{*chosen.value, *chosen.model};
    }();
    if (key.model.is(Kind::number)) {
        if (!target.model->is(Kind::array)) {
            expect_equal(look_up(target, key.value),
                         invalid_conversion(*target.model, "JSON array"), "indexing by a number");
        } else if (key.model.number > -1 &&
                   std::trunc(key.model.number) <
                       static_cast<double>(target.model->elements.size())) {
            expect_equal(look_up(target, key.value), "", "indexing by a number");
            expect_agreement(
                (*target.value)[key.value],
                target.model->elements[static_cast<std::size_t>(std::trunc(key.model.number))],
                "an element");
        }
    } else if (key.model.is(Kind::string)) {
        if (!target.model->is(Kind::object)) {
            expect_equal(look_up(target, key.value),
                         invalid_conversion(*target.model, "JSON object"), "indexing by a text");
        } else if (may_grow(target, Model())) {
            expect_equal(look_up(target, key.value), "", "indexing by a text");
            target.model->members.emplace(key.model.text, Model());
        }
    } else {
        expect_equal(look_up(target, key.value), "throws Undefined value", "indexing by a value");
    }
}

void Session::measure() {
    const Place target = place();
    const Value& value = *target.value;
    expect_equal(outcome([&] { return std::to_string(value.length()); }),
                 target.model->is(Kind::array)
                     ? std::to_string(target.model->elements.size())
                     : "throws json::Value::length not supported for values of type:" +
                           name_of(target.model->kind),
                 "the length");
}

void Session::has_property() {
    const Place target = place();
    const std::string name = key();
    const bool expected = target.model->members.count(name) > 0;
    expect_equal(target.value->hasOwnProperty(name), expected, "hasOwnProperty");
    const Value::HasProperty predicate(name);
    Value::HasProperty copy(predicate);
    expect_equal(copy(*target.value), expected, "HasProperty, copied");
    const Value::HasProperty moved(std::move(copy));
    expect_equal(moved(*target.value), expected, "HasProperty, moved");
    expect_equal(copy(*target.value), target.model->members.count("") > 0,
                 "HasProperty, moved from");
}

// ---- Conversion, comparison, fallback and text -------------------------------------------------

void Session::convert() {
    const Place source = place();
    const Value& value = *source.value;
    expect_equal(outcome([&] { return std::to_string(static_cast<bool>(value)); }),
                 to_bool(*source.model), "the conversion to bool");
    expect_equal(outcome([&] { return std::to_string(static_cast<int>(value)); }),
                 to_int(*source.model), "the conversion to int");
    expect_equal(outcome([&] { return std::to_string(number<short>(value)); }),
                 to_short(*source.model), "the number as a short");
    if (input_.flag()) {
        change_content(source);
    }
}

/// Changes content in place, by the functions of the containers.
void Session::change_content(const Place& target) {
    expect(static_cast<int>(kind_of(*target.value)) == static_cast<int>(target.model->kind),
           "the kind is that of the model");
    if (auto* const text = get_if<std::string>(target.value)) {
        *text += "!";
        target.model->text += "!";
    } else if (auto* const elements = get_if<Array>(target.value)) {
        elements->reserve(2 * elements->size() + 1);
        if (!elements->empty()) {
            elements->erase(elements->begin());
            target.model->elements.erase(target.model->elements.begin());
        }
    } else if (auto* const members = get_if<Object>(target.value)) {
        if (!members->empty()) {
            members->erase(members->begin());
            target.model->members.erase(target.model->members.begin());
        }
    } else if (holds<double>(*target.value)) {
        get<double>(*target.value) = 7;
        target.model->number = 7;
    }
}

void Session::compare() {
    const Place left = place();
    const Place right = place();
    const Value& l = *left.value;
    const Value& r = *right.value;
    const bool same = equal(*left.model, *right.model);
    expect_equal(l == r, same, "==");
    expect_equal(l != r, !same, "!=");
    const int ordered = order(*left.model, *right.model);
    expect_equal(l < r, ordered < 0, "<");
    expect_equal(r<l, ordered> 0, "< the other way round");
}

void Session::fall_back() {
    const Place left = place();
    const Place right = place();
    const Value& chosen = *left.value || *right.value;
    expect(&chosen == (falls_back(*left.model) ? right.value : left.value), "the fallback");
}

void Session::write() {
    const Place source = place();
    expect_equal(serialize(*source.value), compact_text(*source.model), "the text");
}

// ---- Builders ----------------------------------------------------------------------------------

void Session::build_array() {
    const Place first = place();
    Element chain(*first.value);
    std::vector<Model> elements{*first.model};
    for (std::size_t steps = input_.below(8); steps > 0; --steps) {
        if (2 * nodes(array_model(elements)) > most_nodes) {
            return;
        }
        switch (input_.below(4)) {
        case 0:
            static_cast<void>((chain, chain));
            elements.reserve(2 * elements.size());
            std::copy_n(elements.begin(), elements.size(), std::back_inserter(elements));
            break;
        case 1: { // copying nests
            const Element nested(chain);
            static_cast<void>((chain, nested));
            const std::vector<Model> copy = elements;
            elements.push_back(array_model(copy));
            break;
        }
        case 2: { // two at once
            const Place next = place();
            const Element two(*next.value);
            static_cast<void>((two, Element(*first.value)));
            static_cast<void>((chain, two));
            elements.push_back(*next.model);
            elements.push_back(*first.model);
            break;
        }
        default: {
            const Place next = place();
            static_cast<void>((chain, Element(*next.value)));
            elements.push_back(*next.model);
        }
        }
    }
    const Place target = place();
    const Model built = array_model(elements);
    if (may_grow(target, built)) {
        const Value converted = chain;
        expect_agreement(converted, built, "an array converted once");
        put(target, {chain, built});
    }
}

void Session::build_object() {
    const std::string name = key();
    const Property term(name);
    std::map<std::string, Model> members;
    for (std::size_t steps = input_.below(6); steps > 0; --steps) {
        if (2 * nodes(object_model(members)) > most_nodes) {
            return;
        }
        const Place next = place();
        const std::string other_name = key();
        switch (input_.below(5)) {
        case 0:
            static_cast<void>((term, term));
            break;
        case 1: { // assigning a term nests, even if it is the same one
            const Property& same = term;
            term = same;
            const std::map<std::string, Model> copy = members;
            members[name] = object_model(copy);
            break;
        }
        case 2:
            term = (Property(other_name) = *next.value);
            members[name] = object_model({{other_name, *next.model}});
            break;
        case 3:
            static_cast<void>((term, Property(other_name) = *next.value));
            members.emplace(other_name, *next.model);
            break;
        default:
            term = *next.value;
            members[name] = *next.model;
        }
    }
    const Place target = place();
    const Model built = object_model(members);
    if (may_grow(target, built)) {
        const Property copy(term);
        const Value converted = copy;
        expect_agreement(converted, built, "an object converted from a copy of its term");
        put(target, {term, built});
    }
}

} // namespace
} // namespace foundation::json::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace foundation::json::fuzz;
    Session(Input(data, size)).run();
    return 0;
}
