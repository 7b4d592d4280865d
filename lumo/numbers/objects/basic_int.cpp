#include "lumo/numbers/objects/basic_int.h"

#include <algorithm>
#include <string>
#include <vector>

#include "lumo/foundation/console/console.h"
#include "lumo/foundation/errors/exceptions.h"
#include "lumo/multiply/basecase/basecase.h"
#include "lumo/numbers/objects/range_sum.h"

namespace lumo {

namespace {

[[noreturn]] void throw_negative(const char* location) {
    throw UnsupportedNegativeException(location, "A negative value was encountered.");
}
[[noreturn]] void throw_zero(const char* location) {
    throw UnsupportedZeroException(location, "Zero was encountered.");
}

}  // namespace

template <typename wtype>
void BasicInt<wtype>::set_BasicInt(const BasicInt& A) {
    require_capacity("BasicInt::set_BasicInt()", capacity, A.L);
    bp_move(T, A.T, A.L);
    L = A.L;
    hash = A.hash;
}

template <typename wtype>
void BasicInt<wtype>::add_to(const char* location, const BasicInt& A, const BasicInt& B) {
    const BasicInt a = A.L >= B.L ? A : B;
    const BasicInt b = A.L >= B.L ? B : A;
    require_capacity(location, capacity, a.L + 1);
    const wtype carry = add_shorter(T, a.T, a.L, b.T, b.L);
    L = a.L;
    if (carry != 0) T[L++] = 1;
    hash = Hash61::add(a.hash, b.hash);
}

template <typename wtype>
void BasicInt<wtype>::set_add(const BasicInt& A, const BasicInt& B) {
    add_to("BasicIntR::set_add()", A, B);
}

template <typename wtype>
BasicInt<wtype>& BasicInt<wtype>::operator+=(const BasicInt& B) {
    add_to("BasicInt::operator+=()", *this, B);
    return *this;
}

template <typename wtype>
void BasicInt<wtype>::set_sub(const BasicInt& A, const BasicInt& B) {
    constexpr const char* location = "BasicInt::set_sub()";
    if (A.L < B.L) throw_negative(location);
    require_capacity(location, capacity, A.L);
    const std::uint64_t difference = Hash61::sub(A.hash, B.hash);
    const upL_t length = A.L;
    if (sub_shorter(T, A.T, length, B.T, B.L) != 0) throw_negative(location);
    L = bp_strip<wtype>(0, T, length);
    hash = difference;
    if (L == 0) throw_zero(location);
}

template <typename wtype>
BasicInt<wtype>& BasicInt<wtype>::operator-=(const BasicInt& B) {
    constexpr const char* location = "BasicInt::operator-=()";
    if (L < B.L) throw_negative(location);
    require_capacity(location, capacity, L + 1);
    const std::uint64_t difference = Hash61::sub(hash, B.hash);
    upL_t i = B.L;
    if (bp_sub(T, T, B.T, i, wtype(0)) != 0) {
        T[L] = 1;  // stops the borrow, and tells whether it came this far
        while (T[i]-- == 0) i++;
        if (i == L) throw_negative(location);
    }
    L = bp_strip<wtype>(0, T, L);
    hash = difference;
    if (L == 0) throw_zero(location);
    return *this;
}

template <typename wtype>
void BasicInt<wtype>::set_sqrB(const BasicInt& A) {
    require_capacity("BasicInt::set_sqrB()", capacity, 2 * A.L);
    Basecase::sqrB(T, A.T, A.L);
    L = 2 * A.L - (T[2 * A.L - 1] == 0);
    hash = Hash61::mul(A.hash, A.hash);
}

template <typename wtype>
void BasicInt<wtype>::set_mulB(const BasicInt& A, const BasicInt& B) {
    const BasicInt &a = A.L >= B.L ? A : B, &b = A.L >= B.L ? B : A;
    const upL_t length = a.L + b.L;
    require_capacity("BasicIntR::set_mulB()", capacity, length);
    Basecase::mulB(T, a.T, a.L, b.T, b.L);
    L = length - (T[length - 1] == 0);
    hash = Hash61::mul(a.hash, b.hash);
}

template <typename wtype>
std::string BasicInt<wtype>::to_string() const {
    constexpr upL_t LONG = 10001;
    if (L >= LONG) {
        Console::print_error("BasicIntO::to_string(): Performance Warning\n    Converting a " +
                             std::to_string(L) + "-word number using the O(n^2) algorithm.\n");
    }
    constexpr std::uint64_t CHUNK = 1'000'000'000;
    constexpr int CHUNK_DIGITS = 9;
    std::vector<wtype> rest(T, T + L);
    std::string digits;  // lowest first
    while (!rest.empty()) {
        std::uint64_t chunk = 0;
        for (upL_t i = rest.size(); i-- > 0;) {
            const unsigned __int128 x =
                static_cast<unsigned __int128>(chunk) << WordTraits<wtype>::bits | rest[i];
            rest[i] = static_cast<wtype>(x / CHUNK);
            chunk = static_cast<std::uint64_t>(x % CHUNK);
        }
        while (!rest.empty() && rest.back() == 0) rest.pop_back();
        for (int i = 0; i < CHUNK_DIGITS; i++, chunk /= 10)
            digits.push_back(static_cast<char>('0' + chunk % 10));
    }
    while (digits.size() > 1 && digits.back() == '0') digits.pop_back();
    std::reverse(digits.begin(), digits.end());
    return digits.empty() ? "0" : digits;
}

template struct BasicInt<std::uint32_t>;
template struct BasicInt<std::uint64_t>;

}  // namespace lumo
