// Complex vectors in registers, and the steps that take two of them.

using V = Vec<double, VELMORA_KERNEL_LANES>;
using I = V::Ints;
constexpr int LANES = V::lanes;
constexpr int HALVES = 8 / LANES;  // registers that one row of 8 lanes takes

// LANES complex numbers; a root stands in all of them.
struct C {
    V re, im;
};

[[gnu::always_inline]] inline C load(const double* p) {
    return {V::load(p), V::load(p + 8)};
}
[[gnu::always_inline]] inline void store(double* p, const C& a) {
    a.re.store(p);
    a.im.store(p + 8);
}
[[gnu::always_inline]] inline C root(const double* w) {
    return {V::all(w[0]), V::all(w[1])};
}
[[gnu::always_inline]] inline C operator+(const C& a, const C& b) {
    return {a.re + b.re, a.im + b.im};
}
[[gnu::always_inline]] inline C operator-(const C& a, const C& b) {
    return {a.re - b.re, a.im - b.im};
}

[[gnu::always_inline]] inline C mul(const C& a, const C& b) {
    return {fnma(a.im, b.im, a.re * b.re), fma(a.re, b.im, a.im * b.re)};
}
// a conj(w)
[[gnu::always_inline]] inline C mul_conj(const C& a, const C& w) {
    return {fma(a.im, w.im, a.re * w.re), fnma(a.re, w.im, a.im * w.re)};
}

// 2 a - s
[[gnu::always_inline]] inline C mirror(const C& a, const C& s) {
    V two = V::all(2.0);
    return {fms(two, a.re, s.re), fms(two, a.im, s.im)};
}
// (a, b) := (a + w b, a - w b), and the same with i w, conj(w) and -i conj(w).
[[gnu::always_inline]] inline void turn(C& a, C& b, const C& w) {
    C s{fnma(w.im, b.im, fma(w.re, b.re, a.re)), fma(w.im, b.re, fma(w.re, b.im, a.im))};
    b = mirror(a, s);
    a = s;
}
[[gnu::always_inline]] inline void turn_i(C& a, C& b, const C& w) {
    C s{fnma(w.re, b.im, fnma(w.im, b.re, a.re)), fnma(w.im, b.im, fma(w.re, b.re, a.im))};
    b = mirror(a, s);
    a = s;
}
[[gnu::always_inline]] inline void turn_conj(C& a, C& b, const C& w) {
    C s{fma(w.im, b.im, fma(w.re, b.re, a.re)), fnma(w.im, b.re, fma(w.re, b.im, a.im))};
    b = mirror(a, s);
    a = s;
}
[[gnu::always_inline]] inline void turn_conj_i(C& a, C& b, const C& w) {
    C s{fnma(w.im, b.re, fma(w.re, b.im, a.re)), fnma(w.im, b.im, fnma(w.re, b.re, a.im))};
    b = mirror(a, s);
    a = s;
}
// (a + b, a - b), (a + i b, a - i b), (a - i b, a + i b)
[[gnu::always_inline]] inline void cross(C& a, C& b) {
    C s = a + b;
    b = a - b;
    a = s;
}
[[gnu::always_inline]] inline void cross_i(C& a, C& b) {
    C s{a.re - b.im, a.im + b.re};
    b = {a.re + b.im, a.im - b.re};
    a = s;
}
[[gnu::always_inline]] inline void cross_conj_i(C& a, C& b) {
    C s{a.re + b.im, a.im - b.re};
    b = {a.re - b.im, a.im + b.re};
    a = s;
}
