#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <utility>
#include <vector>

class FunctorTwoParams__;

/// The argument records of service calls. A record lives on the caller's stack for the length of the
/// call. Handles are opaque to the plug-in; a callback object stays owned by the plug-in and lives until
/// its clean-up.
class PI_DATA_BASE_CLASS {
  public:
    PI_DATA_BASE_CLASS() : header_(new std::uint32_t[kHeaderWords]{0, 0, 2, 2, 2, 2, 2, 2, 0}) {}
    virtual ~PI_DATA_BASE_CLASS() = default;
    PI_DATA_BASE_CLASS(const PI_DATA_BASE_CLASS&) = delete;
    PI_DATA_BASE_CLASS& operator=(const PI_DATA_BASE_CLASS&) = delete;
    PI_DATA_BASE_CLASS(PI_DATA_BASE_CLASS&&) = default;
    PI_DATA_BASE_CLASS& operator=(PI_DATA_BASE_CLASS&&) = default;

    static constexpr int kHeaderWords = 9;
    /// Nine words of fixed values: 0, 0, 2, 2, 2, 2, 2, 2, 0.
    const std::uint32_t* header() const { return header_.get(); }

  private:
    std::unique_ptr<std::uint32_t[]> header_;
};

class PI_DATA_POINTER_AND_BOOL : public PI_DATA_BASE_CLASS {
  public:
    PI_DATA_POINTER_AND_BOOL(void* handle, bool value) : pointer(handle), flag(value) {}
    void* pointer;
    bool flag;
};

class PI_DATA_POINTER_AND_INT : public PI_DATA_BASE_CLASS {
  public:
    PI_DATA_POINTER_AND_INT(void* handle, std::int32_t value) : pointer(handle), integer(value) {}
    void* pointer;
    std::int32_t integer;
};

class PI_DATA_POINTER_AND_DOUBLE : public PI_DATA_BASE_CLASS {
  public:
    PI_DATA_POINTER_AND_DOUBLE(void* handle, double value) : pointer(handle), real(value) {}
    void* pointer;
    double real;
};

class PI_DATA_POINTER_AND_STRING : public PI_DATA_BASE_CLASS {
  public:
    PI_DATA_POINTER_AND_STRING(void* handle, std::string value) : pointer(handle), text(std::move(value)) {}
    void* pointer;
    std::string text;
};

class PI_DATA_POINTER_AND_POINTER : public PI_DATA_BASE_CLASS {
  public:
    PI_DATA_POINTER_AND_POINTER(void* handle, void* value) : pointer(handle), second(value) {}
    void* pointer;
    void* second;
};

class PI_DATA_POINTER_AND_FUNCTION : public PI_DATA_BASE_CLASS {
  public:
    PI_DATA_POINTER_AND_FUNCTION(void* handle, FunctorTwoParams__* callback)
        : pointer(handle), function(callback) {}
    void* pointer;
    FunctorTwoParams__* function;
};

class PI_DATA_POINTER_AND_OPTS : public PI_DATA_BASE_CLASS {
  public:
    PI_DATA_POINTER_AND_OPTS(void* parent, std::uint32_t layoutOptions)
        : pointer(parent), options(layoutOptions) {}
    void* pointer;
    std::uint32_t options;
};

class PI_DATA_POINTER_INT_AND_BOOL : public PI_DATA_BASE_CLASS {
  public:
    PI_DATA_POINTER_INT_AND_BOOL(void* handle, std::int32_t number, bool value)
        : pointer(handle), integer(number), flag(value) {}
    void* pointer;
    std::int32_t integer;
    bool flag;
};

class PI_DATA_POINTER_INT_AND_STRING : public PI_DATA_BASE_CLASS {
  public:
    PI_DATA_POINTER_INT_AND_STRING(void* handle, std::int32_t number, std::string value)
        : pointer(handle), integer(number), text(std::move(value)) {}
    void* pointer;
    std::int32_t integer;
    std::string text;
};

class PI_DATA_POINTER_INT_AND_FUNCTION : public PI_DATA_BASE_CLASS {
  public:
    PI_DATA_POINTER_INT_AND_FUNCTION(void* parent, std::int32_t number, FunctorTwoParams__* callback)
        : pointer(parent), integer(number), function(callback) {}
    void* pointer;
    std::int32_t integer;
    FunctorTwoParams__* function;
};

class PI_DATA_POINTER_STRING_AND_STRING : public PI_DATA_BASE_CLASS {
  public:
    PI_DATA_POINTER_STRING_AND_STRING(void* handle, std::string one, std::string two)
        : pointer(handle), text(std::move(one)), second(std::move(two)) {}
    void* pointer;
    std::string text;
    std::string second;
};

class PI_DATA_POINTER_STRING_AND_FUNCTION : public PI_DATA_BASE_CLASS {
  public:
    PI_DATA_POINTER_STRING_AND_FUNCTION(void* parent, std::string label, FunctorTwoParams__* callback)
        : pointer(parent), text(std::move(label)), function(callback) {}
    void* pointer;
    std::string text;
    FunctorTwoParams__* function;
};

/// Typed argument lists. The plug-in fills in the arguments; the host leaves them as they are and
/// appends its results behind them, to the list of their type.
class PI_DATA_CATCHALL : public PI_DATA_BASE_CLASS {
  public:
    std::vector<std::int64_t> integers;
    std::vector<double> doubles;
    std::vector<std::string> strings;
    std::vector<void*> pointers;
};

/// A pointer to a structure that the caller owns and the host reads or fills.
class PI_DATA_STRUCT : public PI_DATA_BASE_CLASS {
  public:
    explicit PI_DATA_STRUCT(void* structure) : pointer(structure) {}
    void* pointer;
};
