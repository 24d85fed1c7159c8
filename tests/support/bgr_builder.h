// Builds BGR and TMS bytes from their records, so a test shows content, not hex.
#pragma once

#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>

namespace bgrtest {

template <class Self>
class BytesOf {
 public:
  Self& Tag(std::string_view text) {
    data.append(text);
    data.push_back('\0');
    return static_cast<Self&>(*this);
  }
  Self& Long(std::int32_t v) {
    for (int i = 0; i < 4; ++i) data.push_back(static_cast<char>((static_cast<std::uint32_t>(v) >> (8 * i)) & 0xFF));
    return static_cast<Self&>(*this);
  }
  Self& Double(double v) {
    std::uint64_t u;
    std::memcpy(&u, &v, 8);
    for (int i = 0; i < 8; ++i) data.push_back(static_cast<char>((u >> (8 * i)) & 0xFF));
    return static_cast<Self&>(*this);
  }
  Self& Float(float v) {
    std::uint32_t u;
    std::memcpy(&u, &v, 4);
    return Long(static_cast<std::int32_t>(u));
  }
  Self& Raw(std::string_view bytes) {
    data.append(bytes);
    return static_cast<Self&>(*this);
  }
  std::string data;
};

class Bytes : public BytesOf<Bytes> {};

class BgrBuilder : public BytesOf<BgrBuilder> {
 public:
  // "<bgno>" and the origin record.
  BgrBuilder& Origin(double lat, double lon, double third = 0.0) {
    Tag("<bgno>").Tag("<orgn>").Double(lat).Double(lon).Double(third).Long(1);
    return *this;
  }
  BgrBuilder& Node(double x, double y, double z, bool flowFirst = false, bool flowSecond = false) {
    Tag("<node>").Tag("<bgno>").Tag("<vloc>").Double(x).Double(y).Double(z);
    if (flowFirst) Tag("<flow>").Long(1);
    if (flowSecond) Tag("<flow>").Long(2);
    Tag("<endo>");
    return *this;
  }
  // thickness word = code << 16 | flags
  BgrBuilder& Edge(std::int32_t from, std::int32_t to, std::int32_t code, std::int32_t flags, std::int32_t type,
                   bool nply = false) {
    Tag("<edge>").Long(from).Long(to).Tag("<bgno>").Tag("<thck>");
    Long(static_cast<std::int32_t>(static_cast<std::uint32_t>(code) << 16 | (static_cast<std::uint32_t>(flags) & 0xFFFF)));
    Tag("<type>").Long(type);
    if (nply) Tag("<nply>");
    Tag("<endo>");
    return *this;
  }
  BgrBuilder& End() {
    Tag("<endo>");
    return *this;
  }
};

}  // namespace bgrtest
