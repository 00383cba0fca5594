// Uses every function template of the public headers, with types of a namespace `hostile` that has,
// for each name of a function in the headers, a template that takes anything and is deleted. The
// headers must call none of them: their calls are qualified.

namespace hostile {

enum class E { a, b };
bool operator==(E, E) = delete;

struct Part {
    int number = 0;
    bool operator<(const Part& other) const { return number < other.number; }
    bool operator==(const Part& other) const { return number == other.number; }
    void operator&() const = delete;
};

/// Compares, hashes and allocates for containers, which are then of this namespace, too.
template <class T>
struct Less {
    bool operator()(const T& left, const T& right) const { return left < right; }
};

struct Hash {
    std::size_t operator()(const std::string& text) const { return text.size(); }
};

template <class T>
struct Allocator : std::allocator<T> {
    Allocator() = default;
    template <class U>
    Allocator(const Allocator<U>&) noexcept {}
    template <class U>
    struct rebind {
        using other = Allocator<U>;
    };
};

struct Everything {
    bool flag = false;
    signed char tiny = 0;
    unsigned long long large = 0;
    float single = 0;
    double number = 0;
    long double longest = 0;
    std::string text;
    E enumerator = E::a;
    Part part;
    std::optional<Part> maybe;
    std::vector<Part, Allocator<Part>> vector;
    std::vector<bool, Allocator<bool>> flags;
    std::deque<Part, Allocator<Part>> deque;
    std::list<Part, Allocator<Part>> list;
    std::set<Part, Less<Part>, Allocator<Part>> set;
    std::array<Part, 2> array;
    std::map<std::string, Part, Less<std::string>> map;
    std::unordered_map<std::string, Part, Hash> hash_map;
    std::pair<Part, E> pair;
    std::tuple<Part, std::optional<E>, bool> tuple;
    foundation::json::Value value;
    foundation::json::Array values;
    foundation::json::Object object;
};

struct Nothing {};
struct NothingElse {};

struct Derived : Everything {
    std::optional<int> last = 5;
};

struct Visitor {
    template <class Content>
    int operator()(Content&&) const {
        return 1;
    }
};

} // namespace hostile

template <>
inline constexpr auto foundation::json::enumerators<hostile::E> =
    foundation::json::table<hostile::E>({{hostile::E::a, "a"}, {hostile::E::b, "b"}});

template <>
inline constexpr auto foundation::json::members<hostile::Part> =
    std::tuple(foundation::json::required("number", &hostile::Part::number));

template <>
inline constexpr auto foundation::json::members<hostile::Everything> = foundation::json::table(
    foundation::json::required("flag", &hostile::Everything::flag),
    foundation::json::required("tiny", &hostile::Everything::tiny),
    foundation::json::required("large", &hostile::Everything::large),
    foundation::json::required("single", &hostile::Everything::single),
    foundation::json::required("number", &hostile::Everything::number),
    foundation::json::required("longest", &hostile::Everything::longest),
    foundation::json::required("text", &hostile::Everything::text),
    foundation::json::required("enumerator", &hostile::Everything::enumerator),
    foundation::json::required("part", &hostile::Everything::part),
    foundation::json::defaulted("maybe", &hostile::Everything::maybe),
    foundation::json::defaulted("vector", &hostile::Everything::vector),
    foundation::json::defaulted("flags", &hostile::Everything::flags),
    foundation::json::defaulted("deque", &hostile::Everything::deque),
    foundation::json::defaulted("list", &hostile::Everything::list),
    foundation::json::defaulted("set", &hostile::Everything::set),
    foundation::json::defaulted("array", &hostile::Everything::array),
    foundation::json::defaulted("map", &hostile::Everything::map),
    foundation::json::defaulted("hash_map", &hostile::Everything::hash_map),
    foundation::json::defaulted("pair", &hostile::Everything::pair),
    foundation::json::defaulted("tuple", &hostile::Everything::tuple),
    foundation::json::defaulted("value", &hostile::Everything::value),
    foundation::json::defaulted("values", &hostile::Everything::values),
    foundation::json::defaulted("object", &hostile::Everything::object));

template <>
inline constexpr auto foundation::json::members<hostile::Derived> =
    foundation::json::table(foundation::json::members<hostile::Everything>,
                            foundation::json::defaulted("last", &hostile::Derived::last));

template <>
inline constexpr auto foundation::json::members<hostile::Nothing> = foundation::json::table();

template <>
inline constexpr auto foundation::json::members<hostile::NothingElse> = std::tuple();

template <class T>
void use_content(foundation::json::Value& value) {
    const foundation::json::Value& constant = value;
    static_cast<void>(foundation::json::holds<T>(value));
    static_cast<void>(foundation::json::get_if<T>(&value));
    static_cast<void>(foundation::json::get_if<T>(&constant));
    static_cast<void>(foundation::json::get<T>(value));
    static_cast<void>(foundation::json::get<T>(constant));
    static_cast<void>(foundation::json::get<T>(std::move(constant)));
    static_cast<void>(foundation::json::get<T>(std::move(value)));
}

template <class Number>
void use_number(foundation::json::Value& value) {
    static_cast<void>(foundation::json::number<Number>(value));
    if constexpr (std::is_integral_v<Number>) {
        value = foundation::json::integer(Number());
    }
}

inline void use_everything(foundation::json::Value& value) {
    using namespace foundation::json;
    use_content<Undefined>(value);
    use_content<Null>(value);
    use_content<bool>(value);
    use_content<double>(value);
    use_content<std::string>(value);
    use_content<Array>(value);
    use_content<Object>(value);
    use_content<float>(value);
    use_content<long long>(value);
    use_content<unsigned long long>(value);
    use_number<signed char>(value);
    use_number<unsigned short>(value);
    use_number<int>(value);
    use_number<unsigned long>(value);
    use_number<long long>(value);
    use_number<float>(value);
    use_number<double>(value);
    use_number<long double>(value);
    const Value& constant = value;
    static_cast<void>(foundation::json::name_of(foundation::json::kind_of(value)));
    static_cast<void>(foundation::json::visit(hostile::Visitor(), value));
    static_cast<void>(foundation::json::visit(hostile::Visitor(), constant));
    static_cast<void>(foundation::json::visit(hostile::Visitor(), Value()));
    static_cast<void>(foundation::json::find(value, ""));
    static_cast<void>(foundation::json::find(constant, ""));

    auto object = foundation::json::to<hostile::Derived>(value);
    object = foundation::json::to<hostile::Derived>(value, {});
    object = foundation::json::to<hostile::Derived>(value, ConvertOptions());
    object = foundation::json::to<hostile::Derived>(value, "/a");
    object = foundation::json::to<hostile::Derived>(value, "/a", {});
    object = foundation::json::to_or(value, "/a", object);
    value = foundation::json::from(object);
    value = foundation::json::from(std::vector<hostile::Everything>());
    value = foundation::json::from(foundation::json::to<hostile::Nothing>(value));
    value = foundation::json::from(foundation::json::to<hostile::NothingElse>(value));

    std::string text = foundation::json::write(object);
    text = foundation::json::write(std::vector<hostile::Everything>());
    foundation::json::Writer(text).value(object);
}
