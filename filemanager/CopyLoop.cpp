#include "filemanager/CopyLoop.h"

#include <utility>

namespace {

constexpr std::uint32_t kTransferFlag = 1; // the contract's: always this
constexpr std::uint32_t kSteps = 100;

} // namespace

CCopyLoop::CCopyLoop(COndDeviceComm_0* channel, std::vector<TFILEENTRY> files, bool continueOnError)
    : m_channel(channel), m_files(std::move(files)), m_continueOnError(continueOnError) {
  m_errors.reserve(m_files.size());
}

std::int32_t CCopyLoop::Run(CCopyReceiver& receiver) noexcept {
  m_receiver = &receiver;
  std::int32_t result = EONX_ERR_NONE;
  for (std::size_t i = 0; m_channel && i < m_files.size(); ++i) {
    receiver.OnFileStarted(i);
    const std::int32_t code = Send(m_files[i]);
    if (code != 0) {
      m_errors.push_back({i, code});
      if (!m_continueOnError) {
        return code;
      }
    }
    if (m_abort) {
      return EONX_ERR_ABORTED;
    }
    if (result == EONX_ERR_NONE) {
      result = code;
    }
  }
  return result;
}

std::int32_t CCopyLoop::Send(const TFILEENTRY& file) {
  return m_channel->TransmitFile(file.path.c_str(), file.fileId, file.fileType, file.fileMode, OnProgress, this,
                                 kTransferFlag, kSteps);
}

// Called by the channel.
std::int32_t CCopyLoop::OnProgress(void* loop, std::uint32_t stepsDone) {
  auto* const self = static_cast<CCopyLoop*>(loop);
  self->m_receiver->OnStepsDone(stepsDone);
  return self->m_abort ? 1 : 0;
}
