#pragma once

#include "core/TextCodec.h"

#include <QByteArray>
#include <QString>

#include <cstddef>
#include <cstdint>

// The fuzzer's bytes as the text a reader sees after decoding the file.
inline QString fuzzText(const uint8_t* data, size_t size)
{
    return TextCodec::decode(QByteArray(reinterpret_cast<const char*>(data), qsizetype(size)));
}
