#include "lumo/multiply/fft/fft_operand.h"

#include <algorithm>
#include <cstring>

namespace lumo {

kernels::FftOperand make_fft_operand(const unsigned char* integer, upL_t bytes, const FftSize& size) {
    kernels::FftOperand a{};
    a.bytes = integer;
    a.size = bytes;
    a.tail_start = bytes > 64 ? bytes - 64 : 0;
    if (bytes > 0) {
        std::memcpy(a.head + 1, integer, std::min<upL_t>(bytes, sizeof(a.head) - 1));
        std::memcpy(a.tail, integer + a.tail_start, bytes - a.tail_start);
    }
    for (int i = 0; i < 8; i++) {
        const int low = 6 + i * size.b;  // one below the bit below piece i
        a.piece_words[2 * i] = low / 32;
        a.piece_words[2 * i + 1] = low / 32 + 1;
        a.shift_down[i] = low % 32;
    }
    a.field_mask = ((std::int64_t(2) << size.b) - 1) << 1;
    a.field_frame = (std::int64_t(1023 + 50) << 52) | (std::int64_t(1) << (size.b + 1)) | 1;
    a.real_only = 16 * bytes <= size.limit_bits;
    if (bytes > 0 && (integer[bytes - 1] & 0x80)) {
        a.first_re = 8 * bytes == size.limit_bits ? -1 : 0;
        a.first_im = 16 * bytes == size.limit_bits ? 1 : 0;
    }
    a.borrows = a.first_re != 0 || a.first_im != 0;
    return a;
}

}  // namespace lumo
