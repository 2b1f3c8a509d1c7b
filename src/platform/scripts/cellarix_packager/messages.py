"""What a packaged program tells its user, by the cause of the error. English texts are those of the errors."""

CHINESE = {
    "being-installed": "“{}”正在安装中，请稍候再试。",
    "being-prepared": "“{}”正在由另一次启动进行设置，请稍候再试。",
    "bottle-busy": "此程序的容器正在打包或更改，请稍候再试。",
    "broken-package": "软件包已损坏，请重新安装：{}",
    "close-first": "“{}”已更新，请先将其关闭，然后重新启动。",
    "installing": "正在向此程序的容器安装软件，请在完成后重试。",
    "no-application": "无法启动 Cellarix，请重新安装：{}",
    "no-runner": "未安装 Wine 版本“{}”，应用将使用本机的 Wine 启动。如果无法正常运行，请在其容器的配置中安装该版本。",
    "no-room": "磁盘空间不足，还需要 {} MiB。",
    "not-made": "无法为此程序创建容器：{}",
    "not-upgraded": "无法更新此程序的容器：{}",
    "other-version": "此软件包由另一版本的 Cellarix 制作，无法启动：{}",
    "unreadable-settings": "无法读取容器的设置：{}",
}


def text(error, environ):
    """The sentence of a PackageError in the language of the user."""
    language = next((environ[name] for name in ("LC_ALL", "LC_MESSAGES", "LANG") if environ.get(name)), "")
    if language.lower().startswith("zh") and error.cause in CHINESE:
        return CHINESE[error.cause].format(error.subject)
    return str(error)
