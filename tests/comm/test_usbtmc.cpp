#include <fcntl.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <stdlib.h>
#include <termios.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <memory>
#include <thread>

#include "comm/comm_visa_builtin.h"
#include "comm/visa_resource.h"
#include "comm/visa_resource_manager.h"

namespace {

namespace fs = std::filesystem;

void write_text(const fs::path& path, const std::string& text) {
  fs::create_directories(path.parent_path());
  std::ofstream(path) << text << "\n";
}

// A sysfs tree with one usbtmc interface, and its device file: a pseudo-terminal in raw mode
// whose other end plays the instrument.
class Usbtmc : public ::testing::Test {
 protected:
  const fs::path root =
      fs::temp_directory_path() / ("wavelume_usbtmc_" + std::to_string(::getpid()));
  int instrument = -1;
  // Held open so that the instrument end never sees the terminal hang up between users.
  int terminal_side = -1;

  void SetUp() override {
    const fs::path device = root / "sys/devices/usb1/1-1";
    write_text(device / "idVendor", "1ab1");
    write_text(device / "idProduct", "0641");
    write_text(device / "serial", "SN42");
    write_text(device / "1-1:1.0/bInterfaceNumber", "00");
    fs::create_directories(root / "sys/class/usbmisc/usbtmc0");
    fs::create_directory_symlink(device / "1-1:1.0", root / "sys/class/usbmisc/usbtmc0/device");
    // A class entry without identifiers is passed over.
    fs::create_directories(root / "sys/class/usbmisc/usbtmc1/device");

    instrument = ::posix_openpt(O_RDWR | O_NOCTTY);
    ASSERT_GE(instrument, 0);
    ASSERT_EQ(::grantpt(instrument), 0);
    ASSERT_EQ(::unlockpt(instrument), 0);
    const std::string terminal = ::ptsname(instrument);
    termios mode{};
    terminal_side = ::open(terminal.c_str(), O_RDWR | O_NOCTTY);
    ::tcgetattr(terminal_side, &mode);
    ::cfmakeraw(&mode);
    ::tcsetattr(terminal_side, TCSANOW, &mode);
    fs::create_directories(root / "dev");
    fs::create_symlink(terminal, root / "dev/usbtmc0");
    ::setenv("WAVELUME_USBTMC_SYSFS_ROOT", (root / "sys").c_str(), 1);
    ::setenv("WAVELUME_USBTMC_DEV_ROOT", (root / "dev").c_str(), 1);
  }
  void TearDown() override {
    ::unsetenv("WAVELUME_USBTMC_SYSFS_ROOT");
    ::unsetenv("WAVELUME_USBTMC_DEV_ROOT");
    ::close(terminal_side);
    ::close(instrument);
    fs::remove_all(root);
  }
};

TEST_F(Usbtmc, DevicesAreFoundThroughSysfsAndTalkedToThroughTheirFile) {
  nal::visa_resource_manager_t manager(std::make_shared<nal::comm_visa_builtin_t>());
  const QString name = QStringLiteral("USB0::0x1AB1::0x0641::SN42::INSTR");
  EXPECT_EQ(manager.find_resources("?*::INSTR"), QStringList{name});
  EXPECT_EQ(manager.find_resources("usb?::0x1ab1::?*"), QStringList{name});
  EXPECT_TRUE(manager.find_resources("TCPIP?*").isEmpty());

  std::string command;
  std::thread answer([this, &command]() {
    pollfd entry{instrument, POLLIN, 0};
    char buffer[64];
    if (::poll(&entry, 1, 5000) == 1) {
      command.assign(buffer, static_cast<std::size_t>(
                                 std::max<ssize_t>(0, ::read(instrument, buffer, sizeof buffer))));
      const char reply[] = "Acme,USB,42,1.0\n";
      ::write(instrument, reply, sizeof reply - 1);
    }
  });
  nal::visa_resource_t resource(&manager, "usb0::6833::1601::SN42::0::instr");
  ASSERT_TRUE(resource.open(0, 2000));
  answer.join();
  EXPECT_EQ(command, "*IDN?");
  EXPECT_EQ(resource.get_idn(), "Acme,USB,42,1.0");

  nal::visa_resource_t other(&manager, "USB0::0x1AB1::0x0641::SN43::INSTR");
  EXPECT_FALSE(other.open(0, 2000));
}

}  // namespace
