// Redraw of the I/Q view holding 10,000,000 samples at 1600 x 900, into a QImage: with the data
// layer cached, re-rendered at full range, re-rendered zoomed in, and the first draw after new
// data. The reference is what a chart without reduction does: one QPainter polyline through every
// sample, timed on 1,000,000 samples per channel (the ratio compares samples per second).
//
// New data on a page, split by thread: the worker's preparation of both views (I and Q reduced,
// 2,000 frames of annotations laid out, the spectrum transformed) against what the GUI thread
// then does (move the results in, draw the I/Q view once); the reference is the same work all on
// the GUI thread, as the views' update calls do it. Runs without a display (offscreen).

#include <QApplication>
#include <QImage>
#include <QPainter>
#include <QPolygonF>
#include <random>
#include <string>

#include "bench/bench_ratio_reporter.h"
#include "ui/chart/ui_fft_spectrum_view.h"
#include "ui/chart/ui_iq_waveform_view.h"
#include "ui/chart/ui_vchart_plot_widget.h"

namespace {

using nal::fp64;
using nal::lib_iq_data_arr_t;

constexpr std::size_t k_samples = 10'000'000;
constexpr std::size_t k_reference_samples = 1'000'000;
constexpr int k_width = 1600;
constexpr int k_height = 900;
constexpr fp64 k_sample_rate = 20e6;
constexpr std::size_t k_frame = 5'000;

// A 16QAM-like burst: random levels held for 8 samples, softened, with a little noise.
const lib_iq_data_arr_t& signal() {
  static const lib_iq_data_arr_t samples = [] {
    std::mt19937 random(7);
    std::uniform_int_distribution<int> level(0, 3);
    std::normal_distribution<fp64> noise(0.0, 0.02);
    lib_iq_data_arr_t out(k_samples);
    std::complex<fp64> symbol;
    std::complex<fp64> smooth;
    for (std::size_t n = 0; n < k_samples; ++n) {
      if (n % 8 == 0) {
        symbol = {(2 * level(random) - 3) / 3.0, (2 * level(random) - 3) / 3.0};
      }
      smooth += 0.35 * (symbol - smooth);
      out[n] = smooth + std::complex<fp64>(noise(random), noise(random));
    }
    return out;
  }();
  return samples;
}

// Frames of 5,000 samples, each a preamble, a header and a payload, with a gap between frames.
const nal::lib_waveform_annotations_t& frames() {
  static const nal::lib_waveform_annotations_t segments = [] {
    nal::lib_waveform_annotations_t out;
    for (std::size_t start = 0; start + k_frame <= k_samples; start += k_frame) {
      const std::size_t frame = out.size() / 4 + 1;
      out.push_back({start, k_frame - 500, "frame " + std::to_string(frame)});
      out.push_back({start, 400, "preamble"});
      out.push_back({start + 400, 200, "header"});
      out.push_back({start + 600, k_frame - 1100, "payload"});
    }
    return out;
  }();
  return segments;
}

struct prepared_page_t {
  nal::ui_iq_waveform_view_t::prepared_t iq;
  nal::ui_fft_spectrum_view_t::prepared_t spectrum;
};

// What a page's worker does after computing the samples; the spectrum's copy included.
prepared_page_t prepare_page() {
  const lib_iq_data_arr_t& samples = signal();
  prepared_page_t prepared;
  prepared.iq = nal::ui_iq_waveform_view_t::prepare(samples, frames());
  prepared.spectrum = nal::ui_fft_spectrum_view_t::prepare(samples, k_samples / k_sample_rate,
                                                           static_cast<nal::uint32>(k_samples));
  return prepared;
}

struct view_fixture_t {
  view_fixture_t() : image(k_width, k_height, QImage::Format_ARGB32_Premultiplied) {
    view.resize(k_width, k_height);
    view.update_iq_wave(signal());
    view.render(&image);
  }
  nal::ui_iq_waveform_view_t view;
  QImage image;
};

view_fixture_t& fixture() {
  static view_fixture_t instance;
  return instance;
}

void count_samples(benchmark::State& state, std::size_t per_iteration) {
  state.SetItemsProcessed(static_cast<int64_t>(state.iterations() * per_iteration * 2));
}

void redraw_cached(benchmark::State& state) {
  view_fixture_t& f = fixture();
  f.view.plot()->view_box().reset();
  for (auto _ : state) {
    f.view.render(&f.image);
  }
  count_samples(state, k_samples);
}

void redraw_full_range(benchmark::State& state) {
  view_fixture_t& f = fixture();
  f.view.plot()->view_box().reset();
  for (auto _ : state) {
    f.view.plot()->items_changed();
    f.view.render(&f.image);
  }
  count_samples(state, k_samples);
}

// About 270,000 samples in view, not aligned to any bucket of the reduction.
void redraw_zoomed(benchmark::State& state) {
  view_fixture_t& f = fixture();
  nal::ui_vchart_view_box_t& box = f.view.plot()->view_box();
  box.reset();
  nal::ui_vchart_range_t range = box.visible();
  range.x_min = 3'333'333.3;
  range.x_max = 3'603'603.7;
  box.set_visible(range);
  for (auto _ : state) {
    f.view.plot()->items_changed();
    f.view.render(&f.image);
  }
  count_samples(state, static_cast<std::size_t>(range.x_max - range.x_min));
  box.reset();
}

void update_and_first_draw(benchmark::State& state) {
  view_fixture_t& f = fixture();
  for (auto _ : state) {
    f.view.update_iq_wave(signal());
    f.view.render(&f.image);
  }
  count_samples(state, k_samples);
}

void page_worker_prepare(benchmark::State& state) {
  for (auto _ : state) {
    benchmark::DoNotOptimize(prepare_page());
  }
  count_samples(state, k_samples);
}

void page_gui_thread_show_prepared(benchmark::State& state) {
  view_fixture_t& f = fixture();
  nal::ui_fft_spectrum_view_t spectrum;
  for (auto _ : state) {
    state.PauseTiming();
    prepared_page_t prepared = prepare_page();
    state.ResumeTiming();
    f.view.show_prepared(std::move(prepared.iq));
    spectrum.show_prepared(std::move(prepared.spectrum));
    f.view.render(&f.image);
  }
  count_samples(state, k_samples);
}

void page_all_on_gui_thread(benchmark::State& state) {
  view_fixture_t& f = fixture();
  nal::ui_fft_spectrum_view_t spectrum;
  for (auto _ : state) {
    f.view.update_iq_wave(signal());
    spectrum.update_fft_wave(signal(), k_samples / k_sample_rate,
                             static_cast<nal::uint32>(k_samples));
    f.view.render(&f.image);
  }
  count_samples(state, k_samples);
}

void naive_polyline(benchmark::State& state) {
  const lib_iq_data_arr_t& samples = signal();
  QImage image(k_width, k_height, QImage::Format_ARGB32_Premultiplied);
  QPolygonF in_phase(static_cast<int>(k_reference_samples));
  QPolygonF quadrature(static_cast<int>(k_reference_samples));
  for (auto _ : state) {
    image.fill(Qt::black);
    QPainter painter(&image);
    const fp64 x_scale = static_cast<fp64>(k_width) / k_reference_samples;
    for (std::size_t n = 0; n < k_reference_samples; ++n) {
      const int i = static_cast<int>(n);
      in_phase[i] = QPointF(n * x_scale, k_height * (0.5 - 0.45 * samples[n].real()));
      quadrature[i] = QPointF(n * x_scale, k_height * (0.5 - 0.45 * samples[n].imag()));
    }
    painter.setPen(QPen(Qt::yellow, 0));
    painter.drawPolyline(in_phase);
    painter.setPen(QPen(Qt::cyan, 0));
    painter.drawPolyline(quadrature);
  }
  count_samples(state, k_reference_samples);
}

}  // namespace

int main(int argc, char** argv) {
  if (qEnvironmentVariableIsEmpty("DISPLAY") && qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
  }
  QApplication app(argc, argv);
  signal();
  fixture();
  // The FFT plan of 10M points is made once, outside every timing.
  prepare_page();
  benchmark::RegisterBenchmark("iq_view/redraw_cached_10M", redraw_cached)
      ->Unit(benchmark::kMillisecond);
  benchmark::RegisterBenchmark("iq_view/redraw_full_range_10M", redraw_full_range)
      ->Unit(benchmark::kMillisecond);
  benchmark::RegisterBenchmark("iq_view/redraw_zoomed_270k_of_10M", redraw_zoomed)
      ->Unit(benchmark::kMillisecond);
  benchmark::RegisterBenchmark("iq_view/update_and_first_draw_10M", update_and_first_draw)
      ->Unit(benchmark::kMillisecond);
  benchmark::RegisterBenchmark("page/worker_prepare_10M", page_worker_prepare)
      ->Iterations(3)
      ->Unit(benchmark::kMillisecond);
  benchmark::RegisterBenchmark("page/gui_thread_show_prepared_and_draw_10M",
                               page_gui_thread_show_prepared)
      ->Iterations(5)
      ->Unit(benchmark::kMillisecond);
  benchmark::RegisterBenchmark("page/all_on_gui_thread_10M", page_all_on_gui_thread)
      ->Iterations(3)
      ->Unit(benchmark::kMillisecond);
  benchmark::RegisterBenchmark("naive/qpainter_polyline_1M", naive_polyline)
      ->Iterations(1)
      ->Unit(benchmark::kMillisecond);
  return wavelume_bench::run_benchmarks_with_ratios(
      argc, argv,
      {{"full-range redraw / naive polyline (samples/s)", "iq_view/redraw_full_range", "naive"},
       {"zoomed redraw / naive polyline (samples/s)", "iq_view/redraw_zoomed", "naive"},
       {"first draw after new data / naive polyline (samples/s)", "iq_view/update_and_first_draw",
        "naive"},
       {"GUI thread: worker prepares / GUI does all (samples/s)", "page/gui_thread_show_prepared",
        "page/all_on_gui_thread"}});
}
