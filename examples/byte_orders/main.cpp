// Writes values in both byte orders and reads them back; shows what the end of the data does.

#include <kovabase/KOVABase.h>

#include <cstdio>

int main() {
  const KOVAFileHandle file(new KOVAFile(KOVAFilePath("values.bin")));
  {
    // [write]
    KOVADefaultBinaryBuffer buffer(file, 1);  // 1 writes, any other number reads
    buffer.WriteInt(0x01020304);              // most significant byte first, to begin with
    buffer.SetEndianness(1);
    buffer.WriteInt(0x01020304);
    buffer.WriteDouble(0.1);
    if (buffer.Flush().IsFailure()) return 1;
    // [write]
  }

  // [read]
  KOVADefaultBinaryBuffer buffer(file, 0);
  int big = 0;
  int little = 0;
  double number = 0.0;
  KOVAResult result = buffer.ReadInt(big);
  buffer.SetEndianness(1);
  result &= buffer.ReadInt(little);
  result &= buffer.ReadDouble(number);
  // [read]
  std::printf("%s: %08X %08X %g\n", result.GetMessage(), static_cast<unsigned>(big),
              static_cast<unsigned>(little), number);

  // [peek]
  unsigned char bytes[8];
  buffer.PeekBytes(0, 8, bytes);  // the position stays
  // [peek]
  for (const unsigned char byte : bytes) std::printf("%02X ", byte);
  std::printf("at %ld of %ld\n", buffer.GetOffset(), buffer.GetSize());

  // [end]
  try {
    buffer.ReadInt(big);
  } catch (const Gk_Exception& exception) {
    std::printf("%s\n", exception.getMessage());
  }
  // [end]

  // [memory]
  unsigned char block[] = {0x3F, 0x80, 0, 0, 0xC0, 0, 0, 0};
  KOVADefaultBinaryBuffer memory(block, sizeof block);
  float values[2];
  memory.ReadFloats(values, 2);
  std::printf("%g and %g\n", values[0], values[1]);
  // [memory]
  return 0;
}
