// Printables read through `DMPrintable::CreateFromElmt`: one that is read
// prints, writes, reads back and prints the same text, and writes the same
// element again.

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>

#include "dmcommon/printable/dmprintable.h"
#include "dmcommon/xml/dmxmlwrapper.h"
#include "fuzz/fuzz_support.h"

namespace {

constexpr char kTarget[] = "printable";

struct Read {
  std::unique_ptr<DMPrintable> printable;
  bool recognised = false;
  std::string name;
};

Read ReadPrintable(const std::string& text) {
  DmExtension::DMXMLWrapper document;
  document.loadFromContents(text.c_str());
  Read read;
  document.getName(read.name);
  // Set to the wrong answer, so that a factory that forgets it shows.
  read.recognised = true;
  read.printable.reset(DMPrintable::CreateFromElmt(document, read.recognised));
  const bool known = read.name == "PrintableList" || read.name == "PrintableValue" ||
                     read.name == "PrintableVList";
  dmfuzz::Require(read.recognised == known, kTarget,
                  "recognised does not match the element name " + read.name);
  dmfuzz::Require(known || read.printable == nullptr, kTarget,
                  "an element of another name made a printable");
  return read;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const Read read = ReadPrintable(dmfuzz::AsText(data, size));
  if (read.printable == nullptr) return 0;
  const DMPrintable& printable = *read.printable;

  const std::string printed = printable.Print();
  dmfuzz::Require(printable.Print() == printed, kTarget, "printing twice gives other text");
  const std::unique_ptr<DMPrintable> clone(printable.Clone());
  dmfuzz::Require(clone->Print() == printed, kTarget, "a clone prints other text");

  // What the reader accepts, the writer must be able to write.
  const std::string first = dmfuzz::Written(printable);
  dmfuzz::Require(!first.empty(), kTarget, "a printable that was read writes nothing");
  dmfuzz::Require(dmfuzz::Written(*clone) == first, kTarget, "a clone writes other text");

  const Read reread = ReadPrintable(first);
  dmfuzz::Require(reread.printable != nullptr, kTarget,
                  "the written printable does not read back:\n" + first);
  dmfuzz::Require(reread.printable->Print() == printed, kTarget,
                  "the read-back printable prints other text:\n" + first + "\n" + printed + "\n" +
                      reread.printable->Print());
  const std::string second = dmfuzz::Written(*reread.printable);
  dmfuzz::Require(second == first, kTarget,
                  "write, read, write is no fixed point:\n" + first + "\n" + second);
  return 0;
}
