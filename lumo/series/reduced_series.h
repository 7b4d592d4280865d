/// A series whose long ranges are freed of what their parts have in common.
///
/// Ranges are cut at the multiples of one number of terms. The last merge of such a piece leaves out the
/// CommonFactor of its P, Q and R; all products above are shorter by it.
#pragma once

#include "lumo/series/common_factor.h"
#include "lumo/series/series_common_p2b3.h"

namespace lumo {

template <typename wtype>
class ReducedSeries final : public SeriesCommonP2B3<wtype> {
 public:
    /// Whether the pieces of the terms up to `end`, cut into tds tasks, are so many that they pay for the
    /// inverse.
    static bool worthwhile(const SeriesCommonP2B3<wtype>& series, upL_t end, upL_t tds);

    /// For the terms below `end` of a series with common_power(), which stays alive. The pieces are as long
    /// as the ring allows.
    ReducedSeries(const SeriesCommonP2B3<wtype>& series, upL_t end, const FftSize& ring = default_ring());

    const CommonFactor<wtype>& factor() const { return common; }
    /// As CommonFactor::make(): before ranges are summed.
    void make(const MultiplyContext& ctx, void* image) { common.make(ctx, image); }

    /// Monotonic but for what is divided out where a piece ends: a search for a size then finds a place where
    /// it is reached, though perhaps not the first.
    DoubleDouble block_size(upL_t a, upL_t b) const override;
    void term(LeafTerm<wtype>& out, upL_t k) const override { series.term(out, k); }
    void end(upL_t a, upL_t b, Parts<wtype>& out) const override { series.end(a, b, out); }
    bool join(const MultiplyContext& ctx, upL_t a, upL_t b, Parts<wtype>& left, const Parts<wtype>& right,
              const ExactFloat<wtype>& T) const override;
    DoubleDouble remaining(upL_t k, upL_t end) const override { return series.remaining(k, end); }
    upL_t terms_for(DoubleDouble size) const override { return series.terms_for(size); }

 private:
    static const FftSize& default_ring();
    ReducedSeries(const SeriesCommonP2B3<wtype>& series, upL_t end, const FftSize& ring, upL_t terms);
    /// Whole pieces within [a, b); the first lacks the term 0.
    upL_t pieces(upL_t a, upL_t b) const;
    const SeriesCommonP2B3<wtype>& series;
    CommonFactor<wtype> common;
};

}  // namespace lumo
