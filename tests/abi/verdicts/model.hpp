// A small library, for the verdicts of scripts/abi. Each macro makes one change to it.
#ifndef MODEL_HPP
#define MODEL_HPP

#include <exception>

#define MODEL_EXPORT __attribute__((visibility("default")))

namespace model {

enum Code : int {
    good = 0,
#ifdef ENUMERATOR_WITH_ANOTHER_VALUE
    bad = 2,
#else
    bad = 1,
#endif
#ifdef ENUMERATOR_ADDED
    worse = 3,
#endif
};

#ifdef ENUMERATORS_IN_ANOTHER_ORDER
enum class Level { high, low };
#else
enum class Level { low, high };
#endif

struct Options {
    int depth = 1;
    Level level = Level::low;
#ifdef MEMBER_OF_AN_AGGREGATE_ADDED
    int width = 1;
#endif
};

class MODEL_EXPORT Error : public std::exception {
public:
    explicit Error(Code code);
    Error(const Error&);
    ~Error() override;
    const char* what() const noexcept override;
#ifdef VIRTUAL_FUNCTION_ADDED
    virtual int level() const;
#endif
#ifdef FUNCTION_NO_LONGER_VIRTUAL
    Code code() const;
#else
    virtual Code code() const;
#endif

private:
    Code code_;
};

class MODEL_EXPORT Box {
public:
    Box();
    ~Box();
#ifdef CLASS_GIVEN_VIRTUAL_FUNCTIONS
    virtual int size() const;
#else
    int size() const;
#endif
    void resize(int size, const Options& options = {});
#ifdef MEMBER_FUNCTION_ADDED
    bool empty() const;
#endif

private:
    class Content;

#ifdef DATA_MEMBERS_IN_ANOTHER_ORDER
    int size_;
    Content* content_;
#elif defined(DATA_MEMBER_WITH_ANOTHER_NAME)
    Content* content_;
    int area_;
#elif defined(DATA_MEMBER_IN_A_UNION)
    Content* content_;
    union {
        int size_;
    };
#else
    Content* content_;
    int size_;
#endif
#ifdef DATA_MEMBER_ADDED
    long colour_ = 0;
#elif defined(DATA_MEMBER_ADDED_IN_PADDING)
    bool closed_ = false;
#endif
};

#ifdef PARAMETER_OF_ANOTHER_TYPE
using Times = long;
#else
using Times = int;
#endif
#ifdef RESULT_OF_ANOTHER_TYPE
using Area = long;
#else
using Area = int;
#endif
#ifndef FUNCTION_REMOVED
MODEL_EXPORT Area area(const Box& box, Times times);
#endif

#ifdef VARIABLE_OF_ANOTHER_TYPE
MODEL_EXPORT extern const long limit;
#else
MODEL_EXPORT extern const int limit;
#endif

#ifdef FUNCTION_ADDED
MODEL_EXPORT int volume(const Box& box);
#endif

#ifdef CLASS_ADDED
class MODEL_EXPORT Lid {
public:
    Lid();
    virtual ~Lid();
};
#endif

} // namespace model

#endif
