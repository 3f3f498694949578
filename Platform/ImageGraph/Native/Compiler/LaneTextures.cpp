#include <algorithm>
#include <array>
#include <tuple>
#include <utility>
#include <vector>

#include "Platform/ImageGraph/Native/Compiler/LaneMath.h"
#include "Platform/ImageGraph/Native/Compiler/TargetCalls.h"
#include "Platform/ImageGraph/Native/Compiler/ValueFacts.h"

namespace qv::native {

namespace {

using llvm::Intrinsic::ID;

/// How a texel lies in memory: `words` of 32 bits, or, for smaller ones, the low `bytes` of one word.
struct Layout {
    unsigned bytes, words;
    unsigned channels;     ///< that are stored
    unsigned channelBits;  ///< 8 and 16 are fractions of the largest number, unless they are floats
    bool isFloat;
    std::array<unsigned, 4> order;  ///< where red, green, blue and alpha lie
};

Layout layoutOf(TextureFormat format) {
    switch (format) {
        case TextureFormat::rgba8:
            return {4, 1, 4, 8, false, {0, 1, 2, 3}};
        case TextureFormat::bgra8:
            return {4, 1, 4, 8, false, {2, 1, 0, 3}};
        case TextureFormat::r8:
            return {1, 1, 1, 8, false, {0}};
        case TextureFormat::rg8:
            return {2, 1, 2, 8, false, {0, 1}};
        case TextureFormat::r16:
            return {2, 1, 1, 16, false, {0}};
        case TextureFormat::rgba16Float:
            return {8, 2, 4, 16, true, {0, 1, 2, 3}};
        case TextureFormat::rgba32Float:
            break;
    }
    return {16, 4, 4, 32, true, {0, 1, 2, 3}};
}

/// The words of a texel in each lane.
using Words = std::array<Value*, 4>;

llvm::FixedVectorType* vectorOf(llvm::Type* scalar, unsigned lanes) {
    return llvm::FixedVectorType::get(scalar, lanes);
}

/// 0, 1, 2, …
llvm::Constant* laneNumbers(Builder& ir) {
    std::array<std::uint32_t, kKernelLanes> numbers;
    for (unsigned i = 0; i < kKernelLanes; ++i) numbers[i] = i;
    return llvm::ConstantDataVector::get(ir.getContext(), numbers);
}

/// The address of the texel at (x, y), both scalars.
Value* texelAddress(Builder& ir, const TextureOperands& texture, Value* x, Value* y) {
    Value* const row = ir.CreateMul(ir.CreateSExt(y, ir.getInt64Ty()), texture.rowBytes);
    Value* const column =
        ir.CreateMul(ir.CreateSExt(x, ir.getInt64Ty()), ir.getInt64(layoutOf(texture.format).bytes));
    return ir.CreateGEP(ir.getInt8Ty(), texture.pixels, ir.CreateAdd(row, column));
}

Value* loadAt(Builder& ir, llvm::Type* type, Value* address, unsigned offset = 0) {
    if (offset) address = ir.CreateConstGEP1_32(ir.getInt8Ty(), address, offset);
    return ir.CreateAlignedLoad(type, address, llvm::Align(1));
}

/// Of the scalar place `address`.
Words loadScalar(Builder& ir, const Layout& layout, Value* address) {
    Words words{};
    if (layout.bytes < 4) {
        words[0] = ir.CreateZExt(loadAt(ir, ir.getIntNTy(layout.bytes * 8), address), ir.getInt32Ty());
        return words;
    }
    for (unsigned i = 0; i < layout.words; ++i) words[i] = loadAt(ir, ir.getInt32Ty(), address, 4 * i);
    return words;
}

/// Of neighbouring places from `address` on.
Words loadRow(Builder& ir, const Layout& layout, Value* address) {
    Words words{};
    if (layout.bytes < 4) {
        llvm::Type* const small = vectorOf(ir.getIntNTy(layout.bytes * 8), kKernelLanes);
        words[0] = ir.CreateZExt(loadAt(ir, small, address), vectorOf(ir.getInt32Ty(), kKernelLanes));
        return words;
    }
    const unsigned count = layout.words;
    Value* const all = loadAt(ir, vectorOf(ir.getInt32Ty(), kKernelLanes * count), address);
    if (count == 1) return {all};
    for (unsigned word = 0; word < count; ++word) {
        std::array<int, kKernelLanes> places;
        for (unsigned i = 0; i < kKernelLanes; ++i) places[i] = int(i * count + word);
        words[word] = ir.CreateShuffleVector(all, places);
    }
    return words;
}

/// A number of type `unit` of each lane's own place: `index` counts `pointee`s from `pixels` and is not
/// negative. One by one: gathering instructions are slower on most processors, on some many times.
Value* loadEach(Builder& ir, llvm::Type* unit, llvm::Type* pointee, Value* pixels, Value* index) {
    Value* all = llvm::PoisonValue::get(vectorOf(unit, kKernelLanes));
    for (unsigned i = 0; i < kKernelLanes; ++i) {
        Value* const place = ir.CreateZExt(ir.CreateExtractElement(index, i), ir.getInt64Ty());
        all = ir.CreateInsertElement(all, loadAt(ir, unit, ir.CreateGEP(pointee, pixels, place)), i);
    }
    return all;
}

/// The low and the high words of numbers of 64 bits.
std::pair<Value*, Value*> halves(Builder& ir, Value* pairs) {
    llvm::Type* const words = vectorOf(ir.getInt32Ty(), kKernelLanes);
    return {ir.CreateTrunc(pairs, words), ir.CreateTrunc(ir.CreateLShr(pairs, 32), words)};
}

/// Of each lane's own place: `index` counts texels from the first one.
Words gather(Builder& ir, const Layout& layout, Value* pixels, Value* index) {
    Words words{};
    if (layout.words == 1) {
        llvm::Type* const unit = ir.getIntNTy(layout.bytes * 8);
        words[0] = ir.CreateZExt(loadEach(ir, unit, unit, pixels, index), index->getType());
        return words;
    }
    llvm::Type* const texel = llvm::ArrayType::get(ir.getInt64Ty(), layout.words / 2);
    for (unsigned word = 0; word < layout.words; word += 2) {
        Value* const from = ir.CreateConstGEP1_32(ir.getInt8Ty(), pixels, 4 * word);
        std::tie(words[word], words[word + 1]) =
            halves(ir, loadEach(ir, ir.getInt64Ty(), texel, from, index));
    }
    return words;
}

/// Texels from the first one to (x, y), for `gather`.
Value* texelIndex(Builder& ir, const TextureOperands& texture, Value* x, Value* y) {
    Value* const rowTexels = ir.CreateTrunc(
        ir.CreateLShr(texture.rowBytes, llvm::Log2_32(layoutOf(texture.format).bytes)), ir.getInt32Ty());
    Value* row =
        isVarying(y) ? ir.CreateMul(y, spread(ir, rowTexels)) : spread(ir, ir.CreateMul(y, rowTexels));
    return ir.CreateAdd(row, spread(ir, x));
}

/// Channel `i` of the words as a float.
Value* channel(Builder& ir, const Layout& layout, const Words& words, unsigned i) {
    const unsigned bit = i * layout.channelBits;
    Value* word = words[bit / 32];
    llvm::Type* const floats = laneType(word, ir.getFloatTy());
    if (layout.channelBits == 32) return ir.CreateBitCast(word, floats);
    if (bit % 32) word = ir.CreateLShr(word, bit % 32);
    if (layout.isFloat) {
        Value* const bits = ir.CreateTrunc(word, laneType(word, ir.getInt16Ty()));
        return ir.CreateFPExt(ir.CreateBitCast(bits, laneType(word, ir.getHalfTy())), floats);
    }
    const unsigned most = (1u << layout.channelBits) - 1;
    if (layout.bytes == 4 && bit + layout.channelBits < 32) word = ir.CreateAnd(word, most);
    if (layout.channels == 2 && i == 0) word = ir.CreateAnd(word, most);
    return ir.CreateFMul(ir.CreateUIToFP(word, floats), llvm::ConstantFP::get(floats, 1.0 / most));
}

/// What is missing is 0, alpha 1.
Color decoded(Builder& ir, const Layout& layout, const Words& words) {
    llvm::Type* const floats = laneType(words[0], ir.getFloatTy());
    Color color;
    for (unsigned i = 0; i < 4; ++i) {
        color[i] = i < layout.channels ? channel(ir, layout, words, layout.order[i])
                                       : llvm::ConstantFP::get(floats, i == 3 ? 1 : 0);
    }
    return color;
}

Value* clampedPlace(Builder& ir, Value* place, Value* size) {
    Value* const last = ir.CreateSub(size, ir.getInt32(1));
    place = ir.CreateBinaryIntrinsic(llvm::Intrinsic::smax, place, whole(place, 0));
    return ir.CreateBinaryIntrinsic(llvm::Intrinsic::smin, place, isVarying(place) ? spread(ir, last) : last);
}

/// `count` values from whichever of two blocks runs.
template <class First, class Second>
std::vector<Value*> either(Builder& ir, Value* condition, First first, Second second) {
    llvm::Function* const function = ir.GetInsertBlock()->getParent();
    auto* const yes = llvm::BasicBlock::Create(ir.getContext(), "", function);
    auto* const no = llvm::BasicBlock::Create(ir.getContext(), "", function);
    auto* const after = llvm::BasicBlock::Create(ir.getContext(), "", function);
    ir.CreateCondBr(condition, yes, no);
    ir.SetInsertPoint(yes);
    const std::vector<Value*> a = first();
    llvm::BasicBlock* const yesEnd = ir.GetInsertBlock();
    ir.CreateBr(after);
    ir.SetInsertPoint(no);
    const std::vector<Value*> b = second();
    llvm::BasicBlock* const noEnd = ir.GetInsertBlock();
    ir.CreateBr(after);
    ir.SetInsertPoint(after);
    std::vector<Value*> result;
    for (std::size_t i = 0; i < a.size(); ++i) {
        llvm::PHINode* const phi = ir.CreatePHI(a[i]->getType(), 2);
        phi->addIncoming(a[i], yesEnd);
        phi->addIncoming(b[i], noEnd);
        result.push_back(phi);
    }
    return result;
}

std::vector<Value*> listOf(const Layout& layout, const Words& words) {
    return {words.begin(), words.begin() + layout.words};
}

Words wordsOf(const std::vector<Value*>& list) {
    Words words{};
    std::copy(list.begin(), list.end(), words.begin());
    return words;
}

/// Where each lane lies in a row of sixteen that begins at the lowest place of all.
struct Nearby {
    Value *first, *places;
    Value* areAll;  ///< whether all of them do
};

/// Where places rise or fall along the lanes, whichever end is lower begins the row.
Nearby nearbyOf(Builder& ir, Value* places) {
    Value* const first =
        ir.CreateBinaryIntrinsic(llvm::Intrinsic::smin, ir.CreateExtractElement(places, std::uint64_t(0)),
                                 ir.CreateExtractElement(places, kKernelLanes - 1));
    Value* const offsets = ir.CreateSub(places, spread(ir, first));
    Value* const far =
        ir.CreateICmpNE(ir.CreateAnd(offsets, ~std::uint64_t(kKernelLanes - 1)), whole(offsets, 0));
    return {first, offsets, ir.CreateICmpEQ(ir.CreateBitCast(far, ir.getInt16Ty()), ir.getInt16(0))};
}

std::vector<Value*> pickedOf(Builder& ir, const Layout& layout, const Words& row, Value* places) {
    std::vector<Value*> list = listOf(layout, row);
    for (Value*& word : list) word = pickWords(ir, word, places);
    return list;
}

/// Of each lane's own place. What is enlarged, moved or stepped reads places that lie side by side, or one
/// place for many lanes: all come with one load then.
Words fetchEach(Builder& ir, const Layout& layout, Value* pixels, Value* index) {
    const Nearby nearby = nearbyOf(ir, index);
    return wordsOf(either(
        ir, nearby.areAll,
        [&] {
            Value* const offset =
                ir.CreateMul(ir.CreateZExt(nearby.first, ir.getInt64Ty()), ir.getInt64(layout.bytes));
            Value* const address = ir.CreateGEP(ir.getInt8Ty(), pixels, offset);
            return pickedOf(ir, layout, loadRow(ir, layout, address), nearby.places);
        },
        [&] { return listOf(layout, gather(ir, layout, pixels, index)); }));
}

/// The words of a row's neighbours where all of them lie inside, each lane's own otherwise.
Words rowWords(Builder& ir, const TextureOperands& texture, Value* firstX, Value* y, bool isInside) {
    const Layout layout = layoutOf(texture.format);
    const auto together = [&] { return loadRow(ir, layout, texelAddress(ir, texture, firstX, y)); };
    if (isInside) return together();
    // Between 0 and width − 16, with one comparison.
    Value* const room = ir.CreateSub(texture.width, ir.getInt32(kKernelLanes));
    Value* const isRoom =
        ir.CreateAnd(ir.CreateICmpSGE(firstX, ir.getInt32(0)), ir.CreateICmpSLE(firstX, room));
    return wordsOf(either(
        ir, isRoom, [&] { return listOf(layout, together()); },
        [&] {
            Value* const x = ir.CreateAdd(spread(ir, firstX), laneNumbers(ir));
            Value* const index = texelIndex(ir, texture, clampedPlace(ir, x, texture.width), y);
            return listOf(layout, gather(ir, layout, texture.pixels, index));
        }));
}

/// Where a sample lies along one side: the texel at or before it, and how far it is on the way to the next
/// one, in steps of which there are 2^kWeightBits, and in full, but 0 where the steps are.
struct Place {
    Value *texel, *weight, *fraction;
};
/// A sample that is meant to hit a texel's middle does, in spite of the error of its coordinate.
constexpr unsigned kWeightBits = 9;

Place placeOf(Builder& ir, Value* coordinate, Value* size) {
    constexpr double kSteps = 1u << kWeightBits;
    Value* const extent = ir.CreateSIToFP(size, ir.getFloatTy());
    Value* scale = ir.CreateFMul(extent, number(extent, kSteps));
    Value* last = ir.CreateFSub(scale, number(scale, kSteps));
    if (isVarying(coordinate)) {
        scale = spread(ir, scale);
        last = spread(ir, last);
    }
    // Half a texel back, and half a step up, as what follows cuts off.
    Value* const steps = fma(ir, coordinate, scale, number(scale, 0.5 - kSteps / 2));
    Value* const inside = clamp(ir, steps, number(scale, 0), last);
    Value* const place = ir.CreateFPToSI(inside, laneType(inside, ir.getInt32Ty()));
    Value* const weight = ir.CreateAnd(place, std::uint64_t(kSteps) - 1);
    Value* const way = ir.CreateFSub(ir.CreateFSub(inside, number(inside, 0.5)),
                                     ir.CreateSIToFP(ir.CreateXor(place, weight), inside->getType()));
    Value* const isOnTexel = ir.CreateICmpEQ(weight, whole(weight, 0));
    Value* const fraction =
        ir.CreateSelect(isOnTexel, number(way, 0), ir.CreateFMul(way, number(way, 1 / kSteps)));
    return {ir.CreateLShr(place, kWeightBits), weight, fraction};
}

/// Four neighbours of a sample: this row's and the next one's.
struct Neighbours {
    Words here, right, below, belowRight;
};

/// Texels behind the border are read, but weigh nothing.
Neighbours scalarNeighbours(Builder& ir, const TextureOperands& texture, Value* x, Value* y) {
    const Layout layout = layoutOf(texture.format);
    Value* const address = texelAddress(ir, texture, x, y);
    Value* const below = ir.CreateGEP(ir.getInt8Ty(), address, texture.rowBytes);
    const auto next = [&](Value* place) {
        return ir.CreateConstGEP1_32(ir.getInt8Ty(), place, layout.bytes);
    };
    return {loadScalar(ir, layout, address), loadScalar(ir, layout, next(address)),
            loadScalar(ir, layout, below), loadScalar(ir, layout, next(below))};
}

Neighbours rowNeighbours(Builder& ir, const TextureOperands& texture, Value* x, Value* y) {
    const Layout layout = layoutOf(texture.format);
    Value* const address = texelAddress(ir, texture, x, y);
    Value* const below = ir.CreateGEP(ir.getInt8Ty(), address, texture.rowBytes);
    const auto next = [&](Value* place) {
        return ir.CreateConstGEP1_32(ir.getInt8Ty(), place, layout.bytes);
    };
    return {loadRow(ir, layout, address), loadRow(ir, layout, next(address)), loadRow(ir, layout, below),
            loadRow(ir, layout, next(below))};
}

Neighbours gatheredNeighbours(Builder& ir, const TextureOperands& texture, Value* x, Value* y) {
    const Layout layout = layoutOf(texture.format);
    Value* const index = texelIndex(ir, texture, x, y);
    Value* const below = ir.CreateGEP(ir.getInt8Ty(), texture.pixels, texture.rowBytes);
    Neighbours result{};
    if (layout.bytes == 4) {
        // A texel and its right neighbour come together.
        const auto pair = [&](Value* pixels) {
            return halves(ir, loadEach(ir, ir.getInt64Ty(), ir.getInt32Ty(), pixels, index));
        };
        std::tie(result.here[0], result.right[0]) = pair(texture.pixels);
        std::tie(result.below[0], result.belowRight[0]) = pair(below);
        return result;
    }
    Value* const right = ir.CreateAdd(index, whole(index, 1));
    return {gather(ir, layout, texture.pixels, index), gather(ir, layout, texture.pixels, right),
            gather(ir, layout, below, index), gather(ir, layout, below, right)};
}

/// Of rows that are enlarged or moved, all texels come with a load of each row.
Neighbours neighbours(Builder& ir, const TextureOperands& texture, Value* x, Value* y) {
    if (!isVarying(x) && !isVarying(y)) return scalarNeighbours(ir, texture, x, y);
    x = spread(ir, x);
    const Layout layout = layoutOf(texture.format);
    Nearby nearby = nearbyOf(ir, x);
    Value* const firstY = isVarying(y) ? ir.CreateExtractElement(y, std::uint64_t(0)) : y;
    if (isVarying(y)) {
        Value* const differs = ir.CreateICmpNE(y, spread(ir, firstY));
        nearby.areAll = ir.CreateAnd(
            nearby.areAll, ir.CreateICmpEQ(ir.CreateBitCast(differs, ir.getInt16Ty()), ir.getInt16(0)));
    }
    const auto list = [&](const Neighbours& all, Value* places) {
        std::vector<Value*> values;
        for (const Words& words : {all.here, all.right, all.below, all.belowRight}) {
            const std::vector<Value*> some =
                places ? pickedOf(ir, layout, words, places) : listOf(layout, words);
            values.insert(values.end(), some.begin(), some.end());
        }
        return values;
    };
    const std::vector<Value*> values = either(
        ir, nearby.areAll,
        [&] { return list(rowNeighbours(ir, texture, nearby.first, firstY), nearby.places); },
        [&] { return list(gatheredNeighbours(ir, texture, x, y), nullptr); });
    Neighbours result{};
    auto value = values.begin();
    for (Words* words : {&result.here, &result.right, &result.below, &result.belowRight}) {
        for (unsigned i = 0; i < layout.words; ++i) (*words)[i] = *value++;
    }
    return result;
}

/// Numbers of 15 bits, two to each word.
class Fifteens {
  public:
    explicit Fifteens(Builder& ir) : ir_(ir) {}

    llvm::Type* type(const Value* words) const {
        const auto* vector = llvm::dyn_cast<llvm::FixedVectorType>(words->getType());
        return vectorOf(ir_.getInt16Ty(), 2 * (vector ? vector->getNumElements() : 1));
    }
    Value* split(Value* words) const { return ir_.CreateBitCast(words, type(words)); }
    /// a + (b − a)·weight, the weight in units of 2⁻¹⁵, rounded.
    Value* mix(Value* a, Value* b, Value* weight) const {
        return ir_.CreateAdd(a, multiplyFractions(ir_, ir_.CreateSub(b, a), weight));
    }
    /// A weight of kWeightBits, for both numbers of a word.
    Value* weight(Value* steps) const {
        steps = ir_.CreateShl(steps, 15 - kWeightBits);
        return split(ir_.CreateOr(steps, ir_.CreateShl(steps, 16)));
    }

  private:
    Builder& ir_;
};

/// Bilinear of four 8-bit channels in whole numbers, 7 bits more than the channels have.
Color mixedBytes(Builder& ir, const Layout& layout, const Neighbours& texels, Value* weightX,
                 Value* weightY) {
    const Fifteens fifteens(ir);
    weightX = fifteens.weight(weightX);
    weightY = fifteens.weight(weightY);
    const auto mixed = [&](bool odd) {
        const auto numbers = [&](const Words& words) {
            Value* const two = odd ? ir.CreateAnd(ir.CreateLShr(words[0], 1), 0x7F807F80)
                                   : ir.CreateShl(ir.CreateAnd(words[0], 0x00FF00FF), 7);
            return fifteens.split(two);
        };
        Value* const above = fifteens.mix(numbers(texels.here), numbers(texels.right), weightX);
        Value* const below = fifteens.mix(numbers(texels.below), numbers(texels.belowRight), weightX);
        return ir.CreateBitCast(fifteens.mix(above, below, weightY), texels.here[0]->getType());
    };
    const std::array<Value*, 2> pairs{mixed(false), mixed(true)};
    Color color;
    for (unsigned i = 0; i < 4; ++i) {
        const unsigned byte = layout.order[i];
        Value* const pair = pairs[byte % 2];
        Value* const value = byte < 2 ? ir.CreateAnd(pair, 0xFFFF) : ir.CreateLShr(pair, 16);
        llvm::Type* const floats = laneType(value, ir.getFloatTy());
        color[i] = notePart(
            ir.CreateFMul(ir.CreateUIToFP(value, floats), llvm::ConstantFP::get(floats, 1.0 / (255 * 128))));
    }
    return color;
}

/// Bilinear of any channels in floats. What weighs nothing may be anything.
Color mixedFloats(Builder& ir, const Layout& layout, const Neighbours& texels, Value* weightX,
                  Value* weightY) {
    const auto mixed = [&](Value* a, Value* b, Value* t) {
        Value* const other = ir.CreateSelect(ir.CreateFCmpOEQ(t, number(t, 0)), a, b);
        return fma(ir, t, ir.CreateFSub(other, a), a);
    };
    const Color here = decoded(ir, layout, texels.here), right = decoded(ir, layout, texels.right);
    const Color below = decoded(ir, layout, texels.below),
                belowRight = decoded(ir, layout, texels.belowRight);
    Color color = here;
    for (unsigned i = 0; i < layout.channels; ++i) {
        color[i] = mixed(mixed(here[i], right[i], weightX), mixed(below[i], belowRight[i], weightX), weightY);
    }
    return color;
}

/// A number of `bits` bits in the low end of a word whose upper bits are those of `rounder`'s float.
Value* roundedNumber(Builder& ir, Value* value, unsigned bits) {
    value = clamp(ir, value, number(value, 0), number(value, 1));
    return toBits(ir, fma(ir, value, number(value, double((1u << bits) - 1)), number(value, 0x1p23)));
}

void storeAt(Builder& ir, Value* value, Value* address) {
    ir.CreateAlignedStore(value, address, llvm::Align(1));
}

/// The first channels side by side, texel by texel.
Value* interleaved(Builder& ir, llvm::ArrayRef<Value*> channels) {
    const int count = int(channels.size());
    std::vector<int> join(2 * kKernelLanes), places;
    for (int i = 0; i < int(join.size()); ++i) join[std::size_t(i)] = i;
    std::vector<Value*> parts(channels.begin(), channels.end());
    for (; parts.size() > 1; parts.resize(parts.size() / 2)) {
        const std::size_t half = parts.size() / 2;
        for (std::size_t i = 0; i < half; ++i)
            parts[i] = ir.CreateShuffleVector(parts[2 * i], parts[2 * i + 1], join);
        join.resize(2 * join.size());
        for (int i = 0; i < int(join.size()); ++i) join[std::size_t(i)] = i;
    }
    for (int i = 0; i < kKernelLanes * count; ++i) places.push_back(i % count * kKernelLanes + i / count);
    return ir.CreateShuffleVector(parts[0], places);
}

}  // namespace

Color fetchTexel(Builder& ir, const TextureOperands& texture, Value* x, Value* y, Value* firstX,
                 bool isInside) {
    const Layout layout = layoutOf(texture.format);
    if (!isInside) y = clampedPlace(ir, y, texture.height);
    if (isVarying(x) && firstX && !isVarying(y)) {
        return decoded(ir, layout, rowWords(ir, texture, firstX, y, isInside));
    }
    if (!isInside) x = clampedPlace(ir, x, texture.width);
    if (!isVarying(x) && !isVarying(y)) {
        return decoded(ir, layout, loadScalar(ir, layout, texelAddress(ir, texture, x, y)));
    }
    return decoded(ir, layout, fetchEach(ir, layout, texture.pixels, texelIndex(ir, texture, x, y)));
}

Color sampleTexture(Builder& ir, const TextureOperands& texture, Value* u, Value* v) {
    const Layout layout = layoutOf(texture.format);
    Place column = placeOf(ir, u, texture.width), row = placeOf(ir, v, texture.height);
    const Neighbours texels = neighbours(ir, texture, column.texel, row.texel);
    unify(ir, column.weight, row.weight);
    unify(ir, column.fraction, row.fraction);
    return layout.bytes == 4 ? mixedBytes(ir, layout, texels, column.weight, row.weight)
                             : mixedFloats(ir, layout, texels, column.fraction, row.fraction);
}

void storeTexels(Builder& ir, TextureFormat format, Value* address, const Color& color) {
    const Layout layout = layoutOf(format);
    std::vector<Value*> stored(layout.channels);
    for (unsigned i = 0; i < layout.channels; ++i) stored[layout.order[i]] = spread(ir, color[i]);
    if (layout.isFloat) {
        if (layout.channelBits == 16) {
            for (Value*& value : stored) {
                value = ir.CreateBitCast(ir.CreateFPTrunc(value, laneType(value, ir.getHalfTy())),
                                         laneType(value, ir.getInt16Ty()));
            }
        }
        return storeAt(ir, interleaved(ir, stored), address);
    }
    // The upper bits of all but the first leave the word or are cut off.
    Value* word = nullptr;
    for (unsigned i = 0; i < layout.channels; ++i) {
        Value* const value = roundedNumber(ir, stored[i], layout.channelBits);
        word = word ? ir.CreateOr(word, ir.CreateShl(value, i * layout.channelBits))
                    : ir.CreateXor(value, 0x4B000000);
    }
    storeAt(ir, ir.CreateTrunc(word, laneType(word, ir.getIntNTy(layout.bytes * 8))), address);
}

}  // namespace qv::native
