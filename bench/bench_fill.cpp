// Reading a fountain fill of many colour stops: the fill objects' Read
// against the floor of parsing the same fill.xml into a tree, in one run, so
// the ratio shows what the model costs on top of the XML layer. Stop counts
// of 10 (a usual gradient) and 5000 (a hostile file).
#include <benchmark/benchmark.h>

#include <string>

#include "fill/FillInfo.h"
#include "metadata/Container.h"

namespace {

std::string FountainXml(int stops) {
    std::string xml = "<fill xmlns='urn:brimo:namespaces:zcf:xmlns:fill' version='1.0' type='fountain'>"
                      "<fountain type='linear'><scale x='2' y='0.5'/><angle>30</angle><skew>12</skew><colors>";
    for (int i = 0; i < stops; ++i) {
        xml += "<color position='" + std::to_string(double(i) / stops) + "' midpoint='0.3'>RGB(" +
               std::to_string(i % 256) + ",20,30);CMYK(0,0,0," + std::to_string(i % 100) + ")</color>";
    }
    return xml + "</colors></fountain></fill>";
}

void BM_ParseOnly(benchmark::State& state) {
    const std::string xml = FountainXml(int(state.range(0)));
    for (auto _ : state) {
        Brm::XmlFile file(xml);
        Metadata::Container tree = Metadata::Container::WrapElement(file);
        benchmark::DoNotOptimize(tree.Root());
    }
}

void BM_ReadFountain(benchmark::State& state) {
    const std::string xml = FountainXml(int(state.range(0)));
    Metadata::Container metadata = Metadata::Container::CreateEmpty();
    for (auto _ : state) {
        Brm::XmlFile file(xml);
        Metadata::Container tree = Metadata::Container::WrapElement(file);
        auto fill = CreateFillInfo(metadata, *tree.Root());
        benchmark::DoNotOptimize(fill->Read(metadata, *tree.Root(), nullptr));
    }
}

BENCHMARK(BM_ParseOnly)->Arg(10)->Arg(5000);
BENCHMARK(BM_ReadFountain)->Arg(10)->Arg(5000);

}  // namespace
