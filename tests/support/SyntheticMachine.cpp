// A machine of any size as files, for tests and benchmarks.
#include "support/SyntheticMachine.h"

#include <filesystem>
#include <string>

namespace vel::test {

void writeSyntheticStat(const MachineTree& tree, int processors, const StatColumnsOf& columnsOf) {
  std::string stat = "cpu  4518727 37861 1558625 211149707 108961 0 30016 0 0 0\n";
  for (int cpu = 0; cpu < processors; ++cpu) {
    stat += "cpu" + std::to_string(cpu);
    for (const std::uint64_t column : columnsOf(cpu)) {
      stat += ' ' + std::to_string(column);
    }
    stat += '\n';
  }
  // The first number is the sum, then there is one for each interrupt. x86 has 24 and more per
  // processor, nearly all of them unused.
  stat += "intr 98765432";
  for (int i = 0; i < 256 + 24 * processors; ++i) {
    stat += i % 16 == 0 ? " 4711" : " 0";
  }
  tree.write("proc/stat", stat +
                              "\nctxt 192837465\nbtime 1753430400\nprocesses 64738\n"
                              "procs_running 2\nprocs_blocked 0\n"
                              "softirq 5500 100 200 300 400 500 600 700 800 900 1000\n");
}

void writeSyntheticMachine(const MachineTree& tree, const MachineShape& shape,
                           const StatColumnsOf& columnsOf) {
  writeSyntheticStat(tree, shape.processors(), columnsOf);
  tree.write("proc/loadavg", "1.50 1.25 0.75 2/321 64737\n");
  for (int process = 1; process <= 100; ++process) {
    std::filesystem::create_directory(tree.proc() / std::to_string(process));
  }
  const std::string cpus = "sys/devices/system/cpu/";
  tree.write(cpus + "present", "0-" + std::to_string(shape.processors() - 1) + '\n');
  for (int cpu = 0; cpu < shape.processors(); ++cpu) {
    const int core = cpu % shape.cores();
    std::string siblings = std::to_string(core);
    for (int each = core + shape.cores(); each < shape.processors(); each += shape.cores()) {
      siblings += ',' + std::to_string(each);
    }
    const std::string topology = cpus + "cpu" + std::to_string(cpu) + "/topology/";
    tree.write(topology + "physical_package_id",
               std::to_string(core / shape.coresPerPackage) + '\n');
    tree.write(topology + "core_id", std::to_string(core % shape.coresPerPackage) + '\n');
    tree.write(topology + "core_cpus_list", siblings + '\n');
  }
}

}  // namespace vel::test
