// Building and reading report-sized markup documents. Every insertion moves
// the tail of the one document string, so building grows with the square of
// the row count; these show where that starts to matter.
#include <benchmark/benchmark.h>

#include <string>

#include "markup/markup_document.h"

namespace {

using quillora::MarkupDocument;

// A table of `rows` rows of 18 cells with attributes, as a report writes it.
MarkupDocument BuildReport(int rows) {
  MarkupDocument doc;
  doc.AddElement(u"html");
  doc.AddChildElement(u"body");
  doc.IntoElement();
  doc.AddChildElement(u"table");
  doc.AddChildAttribute(u"class", u"Data");
  doc.IntoElement();
  for (int r = 0; r < rows; ++r) {
    doc.AddChildElement(u"tr");
    doc.IntoElement();
    for (int c = 0; c < 18; ++c) {
      doc.AddChildElement(u"td", u"Client & Co <12.50>");
      doc.AddChildAttribute(u"class", u"Data");
    }
    doc.OutOfElement();
  }
  return doc;
}

void BM_BuildReport(benchmark::State& state) {
  for (auto _ : state) {
    MarkupDocument doc = BuildReport(static_cast<int>(state.range(0)));
    benchmark::DoNotOptimize(doc.DocumentText().size());
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(BM_BuildReport)->Arg(100)->Arg(1000)->Arg(5000)->Unit(benchmark::kMillisecond);

void BM_ReadReport(benchmark::State& state) {
  const std::u16string text = BuildReport(static_cast<int>(state.range(0))).DocumentText();
  for (auto _ : state) {
    MarkupDocument doc;
    benchmark::DoNotOptimize(doc.SetDocument(text));
  }
  state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(text.size() * 2));
}
BENCHMARK(BM_ReadReport)->Arg(1000)->Arg(5000)->Unit(benchmark::kMillisecond);

}  // namespace
