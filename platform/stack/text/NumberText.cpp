#include "platform/stack/text/NumberText.h"

#include "platform/stack/text/TextWriter.h"

#include <array>
#include <cstddef>

namespace bacnet {
namespace {

constexpr std::size_t TEXTS = 64;
constexpr std::size_t TEXT_SIZE = 32;

struct Ring {
    std::array<std::array<char, TEXT_SIZE>, TEXTS> Texts{};
    std::size_t Next = 0;
};

} // namespace

const char* NumberText(const char* before, std::uint32_t number, const char* after) {
    thread_local Ring ring;
    std::array<char, TEXT_SIZE>& text = ring.Texts[ring.Next];
    ring.Next = (ring.Next + 1) % TEXTS;
    TextWriter out(text.data(), text.size());
    out.Put(before);
    out.PutUnsigned(number);
    out.Put(after);
    return text.data();
}

} // namespace bacnet
