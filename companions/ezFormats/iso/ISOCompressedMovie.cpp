#include "ezFormats/iso/ISOCompressedMovie.h"

#include "ezBytes/BoxWalk.h"
#include "ezFormats/iso/ISOLimits.h"

ISOCompressedMovie::Result ISOCompressedMovie::Open(ByteReader& aMovie, std::uint32_t& aBoxBudget) {
    BoxType type;
    ByteReader box = aMovie;
    if (!BoxWalk::Within(aMovie, aBoxBudget).Next(&type, &box) || type != "cmov") {
        return Result::Plain;
    }
    ByteReader algorithm = box;
    ByteReader data = box;
    algorithm.Require(BoxWalk::Within(box, aBoxBudget).Find("dcom", &algorithm));
    data.Require(BoxWalk::Within(box, aBoxBudget).Find("cmvd", &data));
    const BoxType name = BoxType::Read(algorithm);
    const std::uint32_t size = data.ReadBig32();
    if (algorithm.HasFailed() || data.HasFailed()) {
        return Result::Damaged;
    }
    if (name != "zlib" || !InflatedBytes::IsAvailable()) {
        return Result::Unsupported;
    }
    if (size > kISO_MaxInflatedMovie) {
        return Result::TooLarge;
    }
    const InflatedBytes::Result result = mBytes.Inflate(data, kISO_MaxInflatedMovie);
    if (result == InflatedBytes::Result::TooLarge) {
        return Result::TooLarge;
    }
    ByteReader movie(mBytes);
    const bool fMovie = result == InflatedBytes::Result::Whole &&
                        BoxWalk::Within(ByteReader(mBytes), aBoxBudget).Find("moov", &movie);
    if (!fMovie) {
        return Result::Damaged;
    }
    aMovie = movie;
    return Result::Inflated;
}
