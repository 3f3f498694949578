#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

namespace qv {

/// What is wrong with a model file, in words that follow its name.
struct ModelError : std::runtime_error {
    using std::runtime_error::runtime_error;
};

/// A table of a FlatBuffers file. Fields are numbered as in the file's schema; one that the file leaves out
/// reads as its default. Every access is checked against the file's end and throws ModelError beyond it, so
/// any bytes may be read. The file's memory must outlive the table.
class FlatTable {
  public:
    using Bytes = std::span<const std::uint8_t>;

    /// The file's outermost table; `identifier` are the four characters that such a file carries.
    static FlatTable root(Bytes file, std::string_view identifier) {
        const FlatTable head(file);
        if (file.size() < 8 || std::memcmp(file.data() + 4, identifier.data(), 4) != 0)
            throw ModelError("is not a TensorFlow Lite model");
        return head.tableAt(head.target(0));
    }

    template <typename Number>
    Number number(int field, Number otherwise = {}) const {
        const std::size_t place = placeOf(field);
        return place ? read<Number>(place) : otherwise;
    }

    /// An empty table where the file has none.
    FlatTable table(int field) const {
        const std::size_t place = placeOf(field);
        return place ? tableAt(target(place)) : FlatTable(file_);
    }

    std::vector<FlatTable> tables(int field) const {
        std::vector<FlatTable> result;
        const Vector vector = vectorAt(field, sizeof(std::uint32_t));
        result.reserve(vector.count);
        for (std::size_t i = 0; i < vector.count; ++i)
            result.push_back(tableAt(target(vector.first + 4 * i)));
        return result;
    }

    std::vector<std::int32_t> numbers(int field) const {
        const Vector vector = vectorAt(field, sizeof(std::int32_t));
        std::vector<std::int32_t> result(vector.count);
        for (std::size_t i = 0; i < vector.count; ++i) result[i] = read<std::int32_t>(vector.first + 4 * i);
        return result;
    }

    Bytes bytes(int field) const {
        const Vector vector = vectorAt(field, 1);
        return file_.subspan(vector.first, vector.count);
    }

    std::string_view text(int field) const {
        const Bytes characters = bytes(field);
        return {reinterpret_cast<const char*>(characters.data()), characters.size()};
    }

  private:
    struct Vector {
        std::size_t first, count;
    };

    explicit FlatTable(Bytes file) : file_(file) {}

    template <typename Number>
    Number read(std::size_t place) const {
        static_assert(std::is_arithmetic_v<Number>);
        if (place > file_.size() || file_.size() - place < sizeof(Number))
            throw ModelError("is truncated or damaged");
        Number number;
        std::memcpy(&number, file_.data() + place, sizeof(Number));
        return number;
    }

    std::size_t target(std::size_t place) const { return place + read<std::uint32_t>(place); }

    FlatTable tableAt(std::size_t place) const {
        FlatTable table(file_);
        table.place_ = place;
        // The signed distance leads back to the list of the fields' places.
        const std::int64_t fields = std::int64_t(place) - read<std::int32_t>(place);
        if (fields < 0) throw ModelError("is truncated or damaged");
        table.fields_ = std::size_t(fields);
        table.fieldBytes_ = read<std::uint16_t>(table.fields_);
        return table;
    }

    /// 0 for a field that is not there.
    std::size_t placeOf(int field) const {
        const std::size_t entry = 4 + 2 * std::size_t(field);
        if (entry + 2 > fieldBytes_) return 0;
        const auto offset = read<std::uint16_t>(fields_ + entry);
        return offset ? place_ + offset : 0;
    }

    Vector vectorAt(int field, std::size_t elementBytes) const {
        const std::size_t place = placeOf(field);
        if (!place) return {0, 0};
        const std::size_t start = target(place);
        const std::size_t count = read<std::uint32_t>(start);
        if ((file_.size() - start - 4) / elementBytes < count) throw ModelError("is truncated or damaged");
        return {start + 4, count};
    }

    Bytes file_;
    std::size_t place_ = 0, fields_ = 0, fieldBytes_ = 0;
};

}  // namespace qv
